#include "linregmpi.h"

#include <qx/mpi/qxmpipool.h>

#include <climits>

namespace linreg {

MpiPool::MpiPool(MPI_Comm c) : comm(c) {
  MPI_Comm_rank(comm, &rank);
  MPI_Comm_size(comm, &size);
}

std::optional<InputError> MpiPool::Agree(const std::optional<InputError>& own) {
  int first = INT_MAX;
  const int mine = own ? rank : INT_MAX;
  MPI_Allreduce(&mine, &first, 1, MPI_INT, MPI_MIN, comm);
  if (first == INT_MAX) return std::nullopt;
  // The first failing rank's code and text, to everyone.
  long code = own ? static_cast<long>(own->code) : 0L;
  long length = own ? static_cast<long>(own->text.size()) : 0;
  MPI_Bcast(&code, 1, MPI_LONG, first, comm);
  MPI_Bcast(&length, 1, MPI_LONG, first, comm);
  std::string text = own ? own->text : std::string();
  text.resize(static_cast<std::size_t>(length));
  MPI_Bcast(text.data(), static_cast<int>(length), MPI_CHAR, first, comm);
  return InputError{static_cast<Code>(code), text};
}

void MpiPool::Sum(std::vector<long>& counts) {
  MPI_Allreduce(MPI_IN_PLACE, counts.data(), static_cast<int>(counts.size()), MPI_LONG, MPI_SUM,
                comm);
}

long MpiPool::Max(long value) {
  long largest = value;
  MPI_Allreduce(&value, &largest, 1, MPI_LONG, MPI_MAX, comm);
  return largest;
}

bool MpiPool::Combine(QXMath_850::QXMeansXProdData& acc) {
  return QXMath_850::QXMPIPool::Allreduce(acc, comm).IsOK();
}

bool MpiPool::Combine(QXMath_850::QXUniStats& stats) {
  return QXMath_850::QXMPIPool::Allreduce(stats, comm).IsOK();
}

}  // namespace linreg
