// Links the MPI companion, installed or built alongside, and pools a summary
// over the processes it runs on.
#include <qx/mpi/qxmpipool.h>

#include <iostream>

int main(int argc, char** argv) {
  MPI_Init(&argc, &argv);
  int rank = 0, size = 1;
  MPI_Comm_rank(MPI_COMM_WORLD, &rank);
  MPI_Comm_size(MPI_COMM_WORLD, &size);
  QXMath_850::QXUniStats stats("x");
  stats.Update(rank + 1.0);
  const bool ok = QXMath_850::QXMPIPool::Allreduce(stats, MPI_COMM_WORLD).IsOK() &&
                  stats.GetNumberOfCases() == size && stats.GetSummStats()[1] == size;
  if (rank == 0 && ok) std::cout << "mpi consumer ok on " << size << " processes" << std::endl;
  MPI_Finalize();
  return ok ? 0 : 1;
}
