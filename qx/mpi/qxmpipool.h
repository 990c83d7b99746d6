#ifndef QX_MPI_QXMPIPOOL_H
#define QX_MPI_QXMPIPOOL_H

#include <mpi.h>

#include <cstddef>
#include <vector>

#include "qx/accumulators/qxaccumxprodpair.h"
#include "qx/accumulators/qxmeansxproddata.h"
#include "qx/documents/qxunistats.h"
#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxstatusshared.h"

namespace QXMath_850 {

// Pools the partial accumulators that the processes of an MPI communicator
// hold, each over its own share of the cases, so that every process ends
// with the result over all of them. A component whose data is spread over
// processes (or machines) accumulates its share, calls Allreduce on every
// rank, and carries on as if it had read everything itself.
//
// Each partial travels as a flat buffer of doubles (Pack, Unpack) and the
// partials are merged with the classes' own Merge in a binary tree fixed by
// rank: at step s = 1, 2, 4, ... rank r with r mod 2s = s sends to r - s,
// which merges its own first, then the received; rank 0 then broadcasts the
// result. For a given number of ranks and split of the cases the result is
// the same to the bit from run to run, and equals one process's merge of the
// same parts to rounding.
//
// Every rank gets the same status. Before any merge the ranks agree on
// whether every partial can be pooled and all have the same shape; if not,
// or if a merge is refused, every rank gets the same error and keeps its
// partial as it was. No rank is left waiting.
class QXCOMMON_API QXMPIPool {
 public:
  // Status codes, all errors; discrete datum 0 holds the lowest rank at fault
  // (-1 when no one rank is).
  enum Code : long {
    kInvalidPartial = 201,  // a rank's partial is invalid and can't be packed
    kShapesDiffer = 202,    // the partials differ in shape (variables, kind, cut points)
    kMergeRefused = 203,    // a buffer was malformed or a merge was refused
  };

  // The pooled weighted means and cross-products. A QXMeansXProducts or
  // QXProvMeans pools its result; a one-pass run still open is not part of
  // it. A rank with no variables yet takes the others' shape.
  static QXCommon_850::QXStatus Allreduce(QXMeansXProdData& acc, MPI_Comm comm);
  // The pooled pairwise statistics, block sums not yet folded included.
  static QXCommon_850::QXStatus Allreduce(QXAccumXProdPair& acc, MPI_Comm comm);
  // The pooled summary of one field. Every rank must describe the same field
  // (name, kind, cut points and closure); a summary given by SetResults can't
  // be pooled.
  static QXCommon_850::QXStatus Allreduce(QXUniStats& stats, MPI_Comm comm);

  // The buffer of a partial: a header (a magic number, the format version,
  // the kind of partial, the length, a key of the shape) and then the
  // state. False, with `out` empty, when the partial is invalid.
  static bool Pack(const QXMeansXProdData& acc, std::vector<double>& out);
  static bool Pack(const QXAccumXProdPair& acc, std::vector<double>& out);
  static bool Pack(const QXUniStats& stats, std::vector<double>& out);

  // Reads a buffer back into a partial. A buffer of the wrong kind, version
  // or length, or whose sizes don't fit its length, is refused (false, and
  // `acc` is unchanged); nothing is read beyond `size` doubles. A
  // QXMeansXProdData takes the buffer's shape; a QXAccumXProdPair must have
  // the buffer's number of variables and a QXUniStats the same field.
  static bool Unpack(const double* buffer, std::size_t size, QXMeansXProdData& acc);
  static bool Unpack(const double* buffer, std::size_t size, QXAccumXProdPair& acc);
  static bool Unpack(const double* buffer, std::size_t size, QXUniStats& stats);
};

}  // namespace QXMath_850

#endif  // QX_MPI_QXMPIPOOL_H
