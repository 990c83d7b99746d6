#ifndef QX_QXCOMMON_H
#define QX_QXCOMMON_H

// Every public header of the library, for components that want them all.

// Foundation
#include "qx/foundation/ioexception.h"
#include "qx/foundation/localeutil.h"
#include "qx/foundation/mbtoutf8_unix.h"
#include "qx/foundation/progressreport.h"
#include "qx/foundation/qxcancelinfo.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/foundation/qxdynamicloadedlibrary.h"
#include "qx/foundation/qxexception.h"
#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxmissingvalue.h"
#include "qx/foundation/qxquerycancel.h"
#include "qx/foundation/qxrawrecord.h"
#include "qx/foundation/qxrecord.h"
#include "qx/foundation/qxstatusshared.h"
#include "qx/foundation/qxvalue.h"
#include "qx/foundation/qxvaluerecord.h"
#include "qx/foundation/qxwarnings.h"

// Dense matrices
#include "qx/matrices/blas1_d.h"
#include "qx/matrices/linpack_d.h"
#include "qx/matrices/qxbitset.h"
#include "qx/matrices/qxdiagmatrix.h"
#include "qx/matrices/qxeigenvalues.h"
#include "qx/matrices/qxmathfun.h"
#include "qx/matrices/qxrectmatrix.h"
#include "qx/matrices/qxsparsevector.h"
#include "qx/matrices/qxsymblockdiagmatrix.h"
#include "qx/matrices/qxsymmatrix.h"

// Sparse rectangular and block-of-blocks matrices
#include "qx/matrices/qxsparserectmatrix.h"
#include "qx/matrices/qxsymblockmatrix.h"

// Distribution functions and quadrature
#include "qx/distributions/lobattoquad.h"
#include "qx/distributions/qxdistfun.h"
#include "qx/distributions/qxpower.h"

// Accumulators and summaries
#include "qx/accumulators/qxaccumxprodpair.h"
#include "qx/accumulators/qxextremenum.h"
#include "qx/accumulators/qxhashkey.h"
#include "qx/accumulators/qxiterationreporter.h"
#include "qx/accumulators/qxmeansxproddata.h"
#include "qx/accumulators/qxmeansxproducts.h"
#include "qx/accumulators/qxpackedint.h"
#include "qx/accumulators/qxprovmeans.h"
#include "qx/accumulators/qxtimeutil.h"

// Markup and settings
#include "qx/markup/iqxsettingvalue.h"
#include "qx/markup/jsonexport.h"
#include "qx/markup/qxnumvalue.h"
#include "qx/markup/qxsetting.h"
#include "qx/markup/qxsettinglistvalue.h"
#include "qx/markup/qxsettings.h"
#include "qx/markup/qxstrvalue.h"
#include "qx/markup/qxvecvalue.h"
#include "qx/markup/savexml.h"
#include "qx/markup/xmlattribute.h"
#include "qx/markup/xmldoctype.h"
#include "qx/markup/xmlelement.h"
#include "qx/markup/xmlinterface.h"
#include "qx/markup/xmlio.h"
#include "qx/markup/xmlstring.h"
#include "qx/markup/xmlutil.h"

// Random numbers
#include "qx/random/qxrandom.h"
#include "qx/random/qxrandomtwister.h"
#include "qx/random/qxrandomvalues.h"
#include "qx/random/qxrngbeta.h"
#include "qx/random/qxrngbinomial.h"
#include "qx/random/qxrngenerator.h"
#include "qx/random/qxrngnormal.h"
#include "qx/random/qxrngucongruential.h"
#include "qx/random/qxrngutwister.h"
#include "qx/random/qxurandom.h"

// Variables and encoders
#include "qx/dictionary/iqxencoder.h"
#include "qx/dictionary/iqxvariable.h"
#include "qx/dictionary/qxbinningencoder.h"
#include "qx/dictionary/qxcatnumencoder.h"
#include "qx/dictionary/qxcatstats.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxcontencoder.h"
#include "qx/dictionary/qxcontstats.h"
#include "qx/dictionary/qxcontvar.h"
#include "qx/dictionary/qxmtdisplayenums.h"
#include "qx/dictionary/qxroundencoder.h"
#include "qx/dictionary/qxstringencoder.h"
#include "qx/dictionary/qxvarlist.h"
#include "qx/dictionary/qxweightvar.h"

// Result documents
#include "qx/documents/qxapplicinfo4xml.h"
#include "qx/documents/qxdatamodeltags.h"
#include "qx/documents/qxpmmlexporter.h"
#include "qx/documents/qxpmmltags.h"
#include "qx/documents/qxstatxmltags.h"
#include "qx/documents/qxstatxmlutil.h"
#include "qx/documents/qxunistats.h"
#include "qx/documents/qxvariatedata.h"

// Chart data and gains
#include "qx/charts/classgainschart.h"
#include "qx/charts/gainschart.h"
#include "qx/charts/qxbarchartdata.h"
#include "qx/charts/qxclassificationmatrix.h"
#include "qx/charts/qxhistogramdata.h"
#include "qx/charts/qxscatterplotdata.h"
#include "qx/charts/reggainschart.h"

#endif  // QX_QXCOMMON_H
