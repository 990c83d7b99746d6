#include "qx/accumulators/qxiterationreporter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

#include "qx/accumulators/qxextremenum.h"
#include "qx/accumulators/qxtimeutil.h"
#include "qx/foundation/internal/testutil.h"
#include "qx/foundation/qxmissingvalue.h"

namespace QXMath_850 {
namespace {

using QXCommon_850::internal::CaptureDisplay;

TEST(QXIterationReporterTest, MeasuresByNameThroughTheProgressInterface) {
  const std::vector<double> b1{1.5, -2.0}, b2{3.0}, b3{4.0};
  QXIterationReporter reporter;
  QXCommon_850::ProgressReportVect& watched = reporter;
  reporter.SetInfo(&b1, 7, 2, 123.5, 0.25);
  EXPECT_EQ(watched.DiscreteMeasure("iterNum"), 7);
  EXPECT_EQ(watched.DiscreteMeasure("stepHalving"), 2);
  EXPECT_EQ(watched.DiscreteMeasure("iterations"), -1);
  EXPECT_EQ(watched.ScaleMeasure("loglik"), 123.5);
  EXPECT_EQ(watched.ScaleMeasure("time"), 0.25);
  EXPECT_TRUE(QXCommon_850::QXMV::IsMissing(watched.ScaleMeasure("Loglik")));
  EXPECT_EQ(watched.VectorMeasure("paramEstim"), &b1);
  EXPECT_EQ(watched.VectorMeasure("estimates"), nullptr);
  // The six-argument form leaves the step halvings alone.
  reporter.SetInfo(&b1, &b2, &b3, 8, 120.0, 0.5);
  EXPECT_EQ(watched.DiscreteMeasure("stepHalving") + watched.DiscreteMeasure("iterNum"), 10);
  EXPECT_EQ(watched.VectorMeasure("paramEstim2"), &b2);
  EXPECT_EQ(watched.VectorMeasure("paramEstim3"), &b3);
  std::string text = CaptureDisplay([&] { reporter.Display(); });
  std::size_t at = 0;
  for (const char* line :
       {"QXIterationReporter display start", "Iteration number = 8", "Number of step halving = 2",
        "Pseudo -2 log-likelihood = 120", "Elapsed time in sec = 0.5",
        "Parameter estimates (size = 2)", "Parameter estimates, second vector (size = 1)",
        "Parameter estimates, third vector (size = 1)", "QXIterationReporter display end"}) {
    at = text.find(line, at);
    EXPECT_NE(at, std::string::npos) << line;
  }
  reporter.Reset();
  EXPECT_EQ(watched.DiscreteMeasure("iterNum") + watched.ScaleMeasure("loglik"), 0.0);
  EXPECT_EQ(watched.VectorMeasure("paramEstim3"), nullptr);
  text = CaptureDisplay([&] { reporter.Display(); });
  EXPECT_NE(text.find("Parameter estimates pointer is 0"), std::string::npos);
}

TEST(QXTimeUtilTest, AccumulatesProcessorTicksPerStretch) {
  QXTimeUtil timer("fit");
  const std::clock_t begin = std::clock();
  for (volatile double sink = 0.0; std::clock() - begin < CLOCKS_PER_SEC / 50;)
    sink = sink + 1.0;
  timer.Accumulate();
  int ticks = 0, calls = 0, again = 0;
  double seconds = 0.0;
  timer.GetTime(ticks, seconds, calls);
  EXPECT_GE(ticks, CLOCKS_PER_SEC / 50);
  EXPECT_EQ(seconds, ticks / 1e6);
  EXPECT_EQ(calls, 1);
  // Without a new Start the first stretch counts again.
  timer.Accumulate();
  timer.GetTime(again, seconds, calls);
  EXPECT_GE(again, 2 * ticks);
  timer.Decrement(again);
  EXPECT_EQ(CaptureDisplay([&] { timer.Display(); }),
            "\nQXTimeUtil display start \nAccumulated int milliseconds = 0\n"
            "Number of calls = 2\nQXTimeUtil display end");
  timer.Reset();
  timer.GetTime(ticks, seconds, calls);
  EXPECT_EQ(calls, 0);
}

TEST(QXExtremeNumTest, SumSqRootWithoutOverflowAndWithSigns) {
  const double big = 1e200, nan = std::numeric_limits<double>::quiet_NaN();
  // a, b, c, d, and the root, or -1 where the sum is negative.
  const double cases[][5] = {{1, 1, 1, 1, std::sqrt(2.0)},
                             {1, 1, 1, -1, 0.0},
                             {3, 1, 4, 1, 5.0},
                             {4, 1, 3, 1, 5.0},
                             {5, 1, 4, -1, 3.0},
                             {4, -1, 5, 1, 3.0},
                             {4, 1, 5, -1, -1},
                             {5, -1, 4, 1, -1},
                             {0, -1, 0, -4, -1},
                             {-3, 1, 4, 1, 5.0},
                             {1, nan, 1, -1, 0.0},               // NaN: not negative
                             {3 * big, 1, 4 * big, 1, 5 * big},  // squares that would overflow
                             {3e-200, 1, 4e-200, 1, 5e-200}};    // and underflow
  for (const auto& t : cases) {
    double r = -7.0;
    EXPECT_EQ(QXExtremeNum::SumSqRoot(t[0], t[1], t[2], t[3], r), t[4] >= 0.0) << t[0] << t[2];
    EXPECT_NEAR(r, t[4] >= 0.0 ? t[4] : -7.0, 4e-16 * std::fabs(t[4])) << t[0] << " " << t[2];
  }
}

}  // namespace
}  // namespace QXMath_850
