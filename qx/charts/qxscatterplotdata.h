#ifndef QX_CHARTS_QXSCATTERPLOTDATA_H
#define QX_CHARTS_QXSCATTERPLOTDATA_H

#include <string>
#include <vector>

#include "qx/documents/qxunistats.h"
#include "qx/documents/qxvariatedata.h"
#include "qx/foundation/qxexport.h"
#include "qx/random/qxrandomtwister.h"

namespace QXXML_850 {
class XMLElement;
}

namespace QXMath_850 {

// The scatterplot of two weighted continuous variables: the summary of each
// (QXUniStats), their weighted covariance and correlation, and a sample of
// at most a fixed number of points, since a chart of millions of cases draws
// no better than one of thousands. A descriptive component feeds the pairs
// in one pass and writes a "BivariateData" section.
//
// The sample is drawn in the one pass by weighted reservoir sampling: each
// complete pair gets the key u^(1/w), u uniform from the Mersenne Twister,
// and the pairs of the largest keys are kept, so a pair's chance grows with
// its weight as a frequency weight asks. The twister's seed is fixed (by
// default kDefaultSeed), so the same data give the same chart. Points are
// handed out in the order the cases came.
class QXCOMMON_API QXScatterPlotData {
 public:
  static constexpr unsigned long kDefaultSeed = 20240601UL;

  // maxPoints below 0 is taken as 0 (statistics only).
  QXScatterPlotData(const std::string& xName, const std::string& yName, int maxPoints = 5000,
                    unsigned long seed = kDefaultSeed);
  virtual ~QXScatterPlotData();

  // One case. Each variable's summary takes its own value; the pair enters
  // the covariance and the sample only when both values are counted. True
  // if it did.
  bool Update(double x, double y, double weight = 1.0);

  const QXUniStats& GetXStats() const { return xStats; }
  const QXUniStats& GetYStats() const { return yStats; }
  // The weight of the complete pairs, and their covariance (divisor: that
  // weight less one) and correlation; missing where undefined.
  double GetPairWeight() const { return pairWeight; }
  double GetCovariance() const;
  double GetCorrelation() const;

  int GetMaxPoints() const { return maxPoints; }
  // The sampled points, in case order, with their weights.
  std::vector<double> GetSampleX() const;
  std::vector<double> GetSampleY() const;
  std::vector<double> GetSampleWeights() const;

  // Counts of the pairs (weight, missing weight), the pair's statistics, and
  // three coordinates: x, y and the weights of the sample.
  QXXML_850::QXVariateData GetVariateData() const;
  // A new "BivariateData" element of that section, owned by the caller.
  QXXML_850::XMLElement* GetStatXMLElem() const;
  void Display() const { GetVariateData().Display(); }

 private:
  struct Point {
    double key;
    long index;
    double x;
    double y;
    double weight;
  };
  std::vector<Point> SampleInCaseOrder() const;
  std::vector<double> SampleColumn(double Point::*member) const;

  QXUniStats xStats;
  QXUniStats yStats;
  int maxPoints;
  QXRandomTwister twister;
  std::vector<Point> heap;  // a min-heap on key of the points kept
  long nCases;
  double pairWeight;
  double missingWeight;
  double meanX, meanY, sxx, syy, sxy;
};

}  // namespace QXMath_850

#endif  // QX_CHARTS_QXSCATTERPLOTDATA_H
