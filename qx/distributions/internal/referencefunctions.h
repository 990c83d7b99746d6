#ifndef QX_DISTRIBUTIONS_INTERNAL_REFERENCEFUNCTIONS_H
#define QX_DISTRIBUTIONS_INTERNAL_REFERENCEFUNCTIONS_H

// The functions that the reference tables cover, by table name, as the
// accuracy tests and the accuracy tool call them. Never installed.

#include <string>
#include <vector>

#include "qx/distributions/internal/referencetable.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/matrices/qxmathfun.h"

namespace QXMath_850 {
namespace internal {

struct ReferenceFunction {
  std::string table;  // testdata/<table>.txt
  std::string name;   // as the library spells it
  Evaluator evaluate;
  // Errors measured in absolute terms: the noncentral series stop on an
  // absolute bound (the density on one relative to its largest terms).
  bool absolute = false;
};

inline const std::vector<ReferenceFunction>& ReferenceFunctions() {
  using D = QXDistFun;
  using A = const std::vector<double>&;
  static const std::vector<ReferenceFunction> functions = {
      {"derf", "derf", [](A a) { return D::derf(a[0]); }},
      {"derfc", "derfc", [](A a) { return D::derfc(a[0]); }},
      {"dnlgam", "dnlgam", [](A a) { return D::dnlgam(a[0]); }},
      {"cdfstdnorm", "CdfStdNorm", [](A a) { return D::CdfStdNorm(a[0]); }},
      {"idfstdnorm", "IdfStdNorm", [](A a) { return D::IdfStdNorm(a[0]); }},
      {"pdfnormalstandard", "PdfNormalStandard", [](A a) { return D::PdfNormalStandard(a[0]); }},
      {"cdft", "CdfT", [](A a) { return D::CdfT(a[0], a[1]); }},
      {"sigt", "SigT", [](A a) { return D::SigT(a[0], a[1]); }},
      {"idft", "IdfT", [](A a) { return D::IdfT(a[0], a[1]); }},
      {"pdft", "PdfT",
       [](A a) {
         long status;
         return D::PdfT(a[0], a[1], status);
       }},
      {"cdff", "CdfF", [](A a) { return D::CdfF(a[0], a[1], a[2]); }},
      {"sigf", "SigF", [](A a) { return D::SigF(a[0], a[1], a[2]); }},
      {"idff", "IdfF", [](A a) { return D::IdfF(a[0], a[1], a[2]); }},
      {"cdfchi", "CdfChi", [](A a) { return D::CdfChi(a[0], a[1]); }},
      {"sigchi", "SigChi", [](A a) { return D::SigChi(a[0], a[1]); }},
      {"idfchi", "IdfChi", [](A a) { return D::IdfChi(a[0], a[1]); }},
      {"cdfbeta", "CdfBeta", [](A a) { return D::CdfBeta(a[0], a[1], a[2]); }},
      {"idfbeta", "IdfBeta", [](A a) { return D::IdfBeta(a[0], a[1], a[2]); }},
      {"cdfgam", "CdfGam", [](A a) { return D::CdfGam(a[0], a[1], a[2]); }},
      {"idfgam", "IdfGam", [](A a) { return D::IdfGam(a[0], a[1], a[2]); }},
      {"pdfgamma", "PdfGamma", [](A a) { return D::PdfGamma(a[0], a[1], a[2]); }},
      {"noncentralcdfchi", "NonCentralCdfChi",
       [](A a) { return D::NonCentralCdfChi(a[0], a[1], a[2]); }, true},
      {"noncentralcdff", "NonCentralCdfF",
       [](A a) { return D::NonCentralCdfF(a[0], a[1], a[2], a[3], 1e-12); }, true},
      {"noncentralcdft", "NonCentralCdfT", [](A a) { return D::NonCentralCdfT(a[0], a[1], a[2]); },
       true},
      {"noncentralpdft", "NonCentralPdfT",
       [](A a) {
         long status;
         return D::NonCentralPdfT(a[0], a[1], a[2], status);
       },
       true},
      {"pdfbin", "PdfBin",
       [](A a) {
         long status;
         return D::PdfBin(a[0], a[1], a[2], status);
       }},
      {"cdfbin", "CdfBin",
       [](A a) {
         long status;
         return D::CdfBin(a[0], a[1], a[2], status);
       }},
      {"pdfhyper", "PdfHyper",
       [](A a) {
         return D::PdfHyper(static_cast<long>(a[0]), static_cast<long>(a[1]),
                            static_cast<long>(a[2]), static_cast<long>(a[3]));
       }},
      {"cdfhyper", "CDFHyper",
       [](A a) {
         int status;
         return D::CDFHyper(a[0], a[1], a[2], a[3], status);
       }},
      {"dnlbnc", "dnlbnc",
       [](A a) {
         long status;
         return D::dnlbnc(a[0], a[1], status);
       }},
      {"digamma", "QXMathFun::Digamma", [](A a) { return QXMathFun::Digamma(a[0]); }},
      {"trigamma", "QXMathFun::Trigamma", [](A a) { return QXMathFun::Trigamma(a[0]); }},
  };
  return functions;
}

}  // namespace internal
}  // namespace QXMath_850

#endif  // QX_DISTRIBUTIONS_INTERNAL_REFERENCEFUNCTIONS_H
