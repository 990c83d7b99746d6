#include "qx/matrices/internal/symproducts.h"

#include <cstddef>

#include "qx/matrices/internal/packedlayout.h"
#include "qx/matrices/qxmathfun.h"

namespace QXMath_850 {
namespace internal {

namespace {

using internal::PackedSize;
using internal::RowStart;

// Writes a symmetric result of order n row by row: row(i, u) fills u with
// the elements (i, j), of which j <= i are kept. When out is also one of the
// operands the rows go to a temporary first, so that no operand is read
// after it has been overwritten.
template <typename Row>
bool WriteSym(IQXSymMatrix& out, int n, bool diagonalResult, bool aliased, Row row) {
  const int tag = out.GetType();
  if (tag != 0 && !(tag == 1 && diagonalResult)) return false;
  QXSymMatrix temp;
  IQXSymMatrix* target = &out;
  if (aliased) {
    if (!temp.SetNRows(n, true)) return false;
    target = &temp;
  } else if (!PrepareSymOut(out, n, diagonalResult)) {
    return false;
  }
  std::vector<double> u(n > 0 ? n : 0);
  for (int i = 0; i < n; ++i) {
    row(i, u);
    if (target->GetType() == 1) {
      target->SetElem(i, i, u[i]);
    } else {
      double* a = static_cast<QXSymMatrix*>(target)->AsVector().data() + RowStart(i);
      for (int j = 0; j <= i; ++j)
        a[j] = u[j];
    }
  }
  if (!aliased) return true;
  if (tag == 0) {
    static_cast<QXSymMatrix&>(out) = temp;
    return out.IsValidMatrix();
  }
  if (!out.SetNRows(n, true)) return false;
  for (int i = 0; i < n; ++i)
    out.SetElem(i, i, temp.GetElem(i, i));
  return true;
}

// The same for a dense rectangular result, row by row.
template <typename Row>
bool WriteRect(IQXRectMatrix& out, int rows, int cols, bool aliased, Row row) {
  if (out.GetMatrixType() != 0) return false;
  QXRectMatrix temp;
  QXRectMatrix& target = aliased ? temp : static_cast<QXRectMatrix&>(out);
  if (!PrepareRectOut(target, rows, cols)) return false;
  std::vector<double> u(cols > 0 ? cols : 0);
  double* a = target.AsVector().data();
  for (int i = 0; i < rows; ++i) {
    row(i, u);
    for (int j = 0; j < cols; ++j)
      a[static_cast<std::size_t>(i) * cols + j] = u[j];
  }
  if (aliased) static_cast<QXRectMatrix&>(out) = temp;
  return out.IsValidMatrix();
}

// Row i of the packed symmetric store g of order n.
void PackedRow(const std::vector<double>& g, int n, int i, std::vector<double>& v) {
  v.resize(n);
  internal::WalkSymmetricRow(g.data(), i, n, [&v](int j, double x) { v[j] = x; });
}

}  // namespace

bool PrepareSymOut(IQXSymMatrix& out, int n, bool diagonalResult) {
  const int tag = out.GetType();
  if (tag != 0 && !(tag == 1 && diagonalResult)) return false;
  if (out.GetNRows() != n) return out.SetNRows(n, true);
  out.Clear();
  return true;
}

bool PrepareRectOut(IQXRectMatrix& out, int rows, int cols) {
  if (out.GetMatrixType() != 0) return false;
  if (out.GetNRows() != rows || out.GetNCols() != cols) return out.SetNRowsCols(rows, cols, true);
  out.Clear();
  return true;
}

void RectRow(const IQXRectMatrix& r, int i, std::vector<double>& v) {
  if (r.GetMatrixType() == 0) {
    const QXRectMatrix& dense = static_cast<const QXRectMatrix&>(r);
    const double* p = dense.GetRowPtr(i);
    if (p != nullptr) {
      v.assign(p, p + dense.GetNCols());
    } else {
      v.assign(dense.GetNCols() > 0 ? dense.GetNCols() : 0, 0.0);
    }
    return;
  }
  r.GetRow(i, v);
}

double Dot(const std::vector<double>& x, const std::vector<double>& y) {
  double sum = 0.0;
  const std::size_t n = x.size() < y.size() ? x.size() : y.size();
  for (std::size_t k = 0; k < n; ++k)
    sum = sum + x[k] * y[k];
  return sum;
}

bool SymRS(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXRectMatrix& out) {
  const int n = a.GetNRows();
  if (r.GetNCols() != n || n < 0) return false;
  std::vector<double> v;
  return WriteRect(out, r.GetNRows(), n, &out == &r, [&](int k, std::vector<double>& u) {
    RectRow(r, k, v);
    a.ComputeSV(v, u);
  });
}

bool SymRTransS(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXRectMatrix& out) {
  const int n = a.GetNRows();
  if (r.GetNRows() != n || n < 0) return false;
  std::vector<double> v;
  return WriteRect(out, r.GetNCols(), n, &out == &r, [&](int c, std::vector<double>& u) {
    r.GetCol(c, v);
    a.ComputeSV(v, u);
  });
}

bool SymRSRTrans(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXSymMatrix& out) {
  const int n = a.GetNRows();
  if (r.GetNCols() != n || n < 0) return false;
  std::vector<double> v, t, w;
  return WriteSym(out, r.GetNRows(), false, &out == &a, [&](int k, std::vector<double>& u) {
    RectRow(r, k, v);
    a.ComputeSV(v, t);
    for (int j = 0; j <= k; ++j) {
      RectRow(r, j, w);
      u[j] = Dot(t, w);
    }
  });
}

bool SymRTransSR(const IQXSymMatrix& a, const IQXRectMatrix& r, IQXSymMatrix& out) {
  const int n = a.GetNRows();
  if (r.GetNRows() != n || n < 0) return false;
  std::vector<double> v, t;
  return WriteSym(out, r.GetNCols(), false, &out == &a, [&](int c, std::vector<double>& u) {
    r.GetCol(c, v);
    a.ComputeSV(v, t);
    r.ComputeVR(t, v);
    for (int e = 0; e <= c; ++e)
      u[e] = v[e];
  });
}

bool SymRTransSV(const IQXSymMatrix& a, const IQXRectMatrix& r, const std::vector<double>& v,
                 std::vector<double>& out) {
  const int n = a.GetNRows();
  if (r.GetNRows() != n || static_cast<int>(v.size()) != n) return false;
  std::vector<double> t;
  a.ComputeSV(v, t);
  return r.ComputeVR(t, out);
}

bool SymSS(const IQXSymMatrix& a, const IQXSymMatrix& s, IQXRectMatrix& out) {
  const int n = a.GetNRows();
  if (s.GetNRows() != n || n < 0) return false;
  std::vector<double> v;
  return WriteRect(out, n, n, false, [&](int i, std::vector<double>& u) {
    a.GetRow(i, v);
    s.ComputeSV(v, u);
  });
}

bool SymSTransS(const IQXSymMatrix& a, IQXSymMatrix& out) {
  const int n = a.GetNRows();
  std::vector<double> v;
  return WriteSym(out, n, a.GetType() == 1, &out == &a, [&](int i, std::vector<double>& u) {
    a.GetRow(i, v);
    a.ComputeSV(v, u);
  });
}

bool SymGSG(const IQXSymMatrix& g, const IQXSymMatrix& s, IQXSymMatrix& out) {
  const int n = g.GetNRows();
  if (s.GetNRows() != n) return false;
  std::vector<double> v, t;
  const bool diagonal = g.GetType() == 1 && s.GetType() == 1;
  return WriteSym(out, n, diagonal, &out == &g || &out == &s, [&](int i, std::vector<double>& u) {
    g.GetRow(i, v);
    s.ComputeSV(v, t);
    g.ComputeSV(t, u);
  });
}

bool SymGMG(const IQXSymMatrix& m, const std::vector<double>& g, IQXSymMatrix& out) {
  const int n = m.GetNRows();
  if (n < 0 || g.size() != PackedSize(n)) return false;
  std::vector<double> v, t;
  return WriteSym(out, n, false, &out == &m, [&](int i, std::vector<double>& u) {
    PackedRow(g, n, i, v);
    m.ComputeSV(v, t);
    for (int j = 0; j <= i; ++j)
      u[j] = QXMathFun::RVD(n, g, j, t, 0, 1);
  });
}

bool SymMGN(const IQXSymMatrix& m, const IQXSymMatrix& g, const IQXSymMatrix& n,
            IQXSymMatrix& out) {
  const int order = m.GetNRows();
  if (g.GetNRows() != order || n.GetNRows() != order) return false;
  const bool diagonal = m.GetType() == 1 && g.GetType() == 1 && n.GetType() == 1;
  const bool aliased = &out == &m || &out == &g || &out == &n;
  std::vector<double> v, t;
  return WriteSym(out, order, diagonal, aliased, [&](int i, std::vector<double>& u) {
    m.GetRow(i, v);
    g.ComputeSV(v, t);
    n.ComputeSV(t, u);
  });
}

bool SymGMGNG(const IQXSymMatrix& g, const IQXSymMatrix& m, const IQXSymMatrix& n,
              IQXSymMatrix& out, std::vector<double>& work) {
  const int order = g.GetNRows();
  if (m.GetNRows() != order || n.GetNRows() != order) return false;
  const bool diagonal = m.GetType() == 1 && g.GetType() == 1 && n.GetType() == 1;
  const bool aliased = &out == &m || &out == &g || &out == &n;
  std::vector<double> v;
  return WriteSym(out, order, diagonal, aliased, [&](int i, std::vector<double>& u) {
    g.GetRow(i, v);
    m.ComputeSV(v, work);
    g.ComputeSV(work, v);
    n.ComputeSV(v, work);
    g.ComputeSV(work, u);
  });
}

bool SymLSLTrans(const IQXSymMatrix& a, const IQXSymMatrix& s, IQXSymMatrix& out) {
  const int n = a.GetNRows();
  if (s.GetNRows() != n) return false;
  const bool diagonal = a.GetType() == 1 && s.GetType() == 1;
  std::vector<double> l, t;
  return WriteSym(out, n, diagonal, &out == &a || &out == &s, [&](int i, std::vector<double>& u) {
    s.GetRow(i, l);
    for (int k = i + 1; k < n; ++k)
      l[k] = 0.0;
    a.ComputeSV(l, t);
    s.ComputeLV(t, u);
  });
}

bool SymLTransSL(const IQXSymMatrix& a, const IQXSymMatrix& s, IQXSymMatrix& out, int nBlocks) {
  const int n = a.GetNRows();
  const int q = s.GetNRows();
  if (nBlocks < 1 || q < 0 || n != q * nBlocks) return false;
  const bool diagonal = a.GetType() == 1 && s.GetType() == 1;
  std::vector<double> row, column(n > 0 ? n : 0), t, slice(q > 0 ? q : 0), product;
  return WriteSym(out, n, diagonal, &out == &a || &out == &s, [&](int i, std::vector<double>& u) {
    // Column i of the repeated factor, then L^T (A l_i) over the blocks up
    // to i's own.
    const int block = i / q;
    const int place = i - block * q;
    s.GetRow(place, row);
    for (double& x : column)
      x = 0.0;
    for (int k = place; k < q; ++k)
      column[block * q + k] = row[k];
    a.ComputeSV(column, t);
    for (int b = 0; b <= block; ++b) {
      for (int k = 0; k < q; ++k)
        slice[k] = t[b * q + k];
      s.ComputeLTransV(slice, product);
      for (int k = 0; k < q; ++k)
        u[b * q + k] = product[k];
    }
  });
}

double SymTraceOfProduct(const IQXSymMatrix& a, const IQXSymMatrix& s) {
  const int n = a.GetNRows();
  if (s.GetNRows() != n) return 0.0;
  std::vector<double> x, y;
  double sum = 0.0;
  for (int i = 0; i < n; ++i) {
    a.GetRow(i, x);
    s.GetRow(i, y);
    sum = sum + Dot(x, y);
  }
  return sum;
}

double SymTraceOfProductOfThree(const IQXSymMatrix& a, const IQXSymMatrix& s,
                                const IQXSymMatrix& t) {
  const int n = a.GetNRows();
  if (s.GetNRows() != n || t.GetNRows() != n) return 0.0;
  std::vector<double> x, u, y;
  double sum = 0.0;
  for (int i = 0; i < n; ++i) {
    s.GetRow(i, x);
    a.ComputeSV(x, u);
    t.GetRow(i, y);
    for (int j = 0; j < n; ++j)
      sum = sum + u[j] * y[j];
  }
  return sum;
}

double SymVSWParts(const IQXSymMatrix& a, const double* v, int vCount, const double* w,
                   int wCount) {
  const int n = a.GetNRows();
  const int rows = wCount < n ? wCount : n;
  const int cols = vCount < n ? vCount : n;
  std::vector<double> row;
  double sum = 0.0;
  for (int i = 0; i < rows; ++i) {
    a.GetRow(i, row);
    double t = 0.0;
    for (int j = 0; j < cols; ++j)
      t = t + v[j] * row[j];
    sum = sum + t * w[i];
  }
  return sum;
}

double SymVSWStretch(const IQXSymMatrix& a, const std::vector<double>& v, int first, int last,
                     int other) {
  const int n = a.GetNRows();
  if (first < 0 || last < first || last >= n || other < 0 || other + (last - first) >= n ||
      static_cast<int>(v.size()) < n) {
    return 0.0;
  }
  const int m = last - first + 1;
  double sum = 0.0;
  for (int i = first; i <= last; ++i) {
    double t = 0.0;
    for (int k = 0; k < m; ++k)
      t = t + v[other + k] * a.GetElem(i, other + k);
    sum = sum + t * v[i];
  }
  return sum;
}

}  // namespace internal
}  // namespace QXMath_850
