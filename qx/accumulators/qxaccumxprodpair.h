#ifndef QX_ACCUMULATORS_QXACCUMXPRODPAIR_H
#define QX_ACCUMULATORS_QXACCUMXPRODPAIR_H

#include <cstddef>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/matrices/qxsymmatrix.h"

namespace QXMath_850 {

class QXRectMatrix;

// Weighted count, means, variances and covariance of every pair of variables,
// each pair taken over the cases where both of its variables are present
// (pairwise deletion). Components that report correlations and descriptive
// tables of data with holes feed it case by case.
//
// Pair (i, j), j < i, has the index k = i(i-1)/2 + j in every pair matrix;
// "X" is variable i and "Y" variable j. Updates collect plain weighted sums in
// a block that is folded into the running statistics every nAccum updates of
// the pair; Finish folds what is left. Variances and covariances divide by the
// total weight less one. Refusals are a false result; nothing is thrown
// except on allocation failure.
class QXCOMMON_API QXAccumXProdPair {
 public:
  // A negative nVars counts as 0. The pair matrices have order nVars - 1.
  QXAccumXProdPair(int nVars, int nAccum);
  QXAccumXProdPair(const QXAccumXProdPair& other);
  QXAccumXProdPair& operator=(const QXAccumXProdPair& other);
  virtual ~QXAccumXProdPair();

  // Updates per block; ignored unless n > 0.
  void SetNAccum(int n);
  int GetNVars() const { return nVars; }
  int GetNAccum() const { return nAccum; }
  // The index of pair (i, j), or -1 unless 0 <= j < i < nVars.
  int GetPairIndex(int i, int j) const;

  // Every pair matrix to order nVars, zeroed: a fresh start.
  void InitAll();
  // Zeroes pair k's block sums and count.
  void InitAccumCounts(int k);

  // Adds one case to pair k; when the pair's block is full, folds it and
  // returns the fold's answer. False for a k outside the pairs.
  bool Update(int k, double x, double y, double w);
  // The same for pair (i, j); false unless 0 <= j < i < nVars.
  bool Update(int i, double x, int j, double y, double w);
  // Adds a whole case: every pair whose two values are both present (not the
  // missing value) is updated as by Update(k, x[i], x[j], w). False, with
  // nothing changed, if x is shorter than nVars or w is the missing value.
  // A fold that can't be made yet keeps its sums, as in Update.
  bool UpdateCase(const std::vector<double>& x, double w);
  // Adds the first nRows cases of a block (all of them for nRows <= 0), one
  // per row as by UpdateCase: nVars values, then the case weight if the
  // matrix has one more column. A row with a missing weight is skipped.
  // False, with nothing changed, for any other number of columns. The
  // fastest way in: the cases are taken in slices that stay in cache.
  bool UpdateCases(const QXRectMatrix& data, int nRows);

  // Folds pair k's block into its running statistics. False when the total
  // weight with the block would not be above 1 (the sums are kept for
  // later); true with nothing done for an empty block.
  bool IncrStats(int k);
  // Folds every pair in order, stopping at the first refusal: the pairs after
  // it stay unfolded, and the answer is false.
  bool Finish();

  // The running statistics, one element per pair (index k).
  const QXSymMatrix& GetTotCases() const { return totCases; }
  const QXSymMatrix& GetMeanX() const { return meanX; }
  const QXSymMatrix& GetMeanY() const { return meanY; }
  const QXSymMatrix& GetVarX() const { return varX; }
  const QXSymMatrix& GetVarY() const { return varY; }
  const QXSymMatrix& GetCovar() const { return covar; }
  // Fills the matrix of order nVars kept for correlations and returns it:
  // element (i, j) is the covariance store read at the packed index of order
  // nVars divided by the fourth roots of the store's elements at (i, i) and
  // (j, j), and the missing value where either of those is not above 0 or
  // lies beyond the store.
  const QXSymMatrix& GetCorr();
  // Pairwise correlations as a matrix of order nVars: unit diagonal, and
  // covar / sqrt(varX * varY) for each pair, or the missing value where
  // either variance is not above 0.
  void GetPairCorr(QXSymMatrix& out) const;

  // Pools another accumulator into this one, pair by pair. An object with no
  // variables takes on the other's number; false for a different number.
  // The other's block sums are taken for the first nVars pairs only, and its
  // second-variable mean is taken to be its first-variable mean.
  bool Merge(const QXAccumXProdPair& other);
  // Pools a list in order, skipping null entries; stops with false at the
  // first refusal and keeps what was merged before it.
  bool Merge(const std::vector<QXAccumXProdPair*>& list);
  bool Merge(const std::vector<const QXAccumXProdPair*>& list);

  void Display() const;

  // The whole accumulated state as one array, for pooling across processes:
  // the first nPairs elements of each of the 13 pair matrices, block sums
  // (the count of accumulations first) then running statistics, in the order
  // they are declared. False, with `out` empty, after a failed allocation.
  bool GetState(std::vector<double>& out) const;
  // Puts back a state from GetState of an accumulator with as many
  // variables; false, and nothing changes, for any other length.
  bool SetState(const std::vector<double>& state);

 private:
  // Re-points every flat alias at its matrix's store and counts the pairs
  // that every store holds (none after a failed allocation).
  void RetakeFlat();
  // The 13 stores that make up the state, in GetState's order.
  std::vector<std::vector<double>*> StateStores() const;
  // Every pair matrix to the given order, zeroed.
  void SizePairMatrices(int order);
  // Adds count cases: case r's values at rows + r * stride, its weight at
  // weights[r * weightStride], or 1 without weights.
  void AddCases(const double* rows, std::size_t stride, const double* weights,
                std::size_t weightStride, int count);
  // Folds the full blocks among the count pairs from k on that a case with
  // second-variable values y (missing where they equal `missing`) has just
  // added to.
  void FoldFullPairs(int k, const double* y, int count, double missing);

  int nVars;
  int nAccum;
  int nPairs;
  QXSymMatrix accCounts;
  std::vector<double>* accCountsFlat;
  QXSymMatrix accCases;
  std::vector<double>* accCasesFlat;
  QXSymMatrix accSumX;
  std::vector<double>* accSumXFlat;
  QXSymMatrix accSumY;
  std::vector<double>* accSumYFlat;
  QXSymMatrix accSumXX;
  std::vector<double>* accSumXXFlat;
  QXSymMatrix accSumYY;
  std::vector<double>* accSumYYFlat;
  QXSymMatrix accSumXY;
  std::vector<double>* accSumXYFlat;
  QXSymMatrix totCases;
  std::vector<double>* totCasesFlat;
  QXSymMatrix meanX;
  std::vector<double>* meanXFlat;
  QXSymMatrix meanY;
  std::vector<double>* meanYFlat;
  QXSymMatrix varX;
  std::vector<double>* varXFlat;
  QXSymMatrix varY;
  std::vector<double>* varYFlat;
  QXSymMatrix covar;
  std::vector<double>* covarFlat;
  QXSymMatrix corr;
  std::vector<double>* corrFlat;
};

}  // namespace QXMath_850

#endif  // QX_ACCUMULATORS_QXACCUMXPRODPAIR_H
