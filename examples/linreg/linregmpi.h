// The processes of an MPI run as the regression component's Pool: each rank
// fits its share of the file, and the ranks pool their sums with
// qxcommon::mpi.
#ifndef QX_EXAMPLES_LINREG_LINREGMPI_H
#define QX_EXAMPLES_LINREG_LINREGMPI_H

#include <mpi.h>

#include "linreg.h"

namespace linreg {

class MpiPool : public Pool {
 public:
  explicit MpiPool(MPI_Comm comm);
  int Index() const override { return rank; }
  int Count() const override { return size; }
  std::optional<InputError> Agree(const std::optional<InputError>& own) override;
  void Sum(std::vector<long>& counts) override;
  long Max(long value) override;
  bool Combine(QXMath_850::QXMeansXProdData& acc) override;
  bool Combine(QXMath_850::QXUniStats& stats) override;

 private:
  MPI_Comm comm;
  int rank = 0;
  int size = 1;
};

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_LINREGMPI_H
