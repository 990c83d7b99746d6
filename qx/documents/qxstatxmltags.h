#ifndef QX_DOCUMENTS_QXSTATXMLTAGS_H
#define QX_DOCUMENTS_QXSTATXMLTAGS_H

#include <string>

// The vocabulary of StatXML documents: element names (XML_ELE_), attribute
// names (XML_ATT_) and attribute values (XML_VAL_). The constants have
// internal linkage, so every source unit that includes this header holds its
// own copy, built when the library loads: compare them by text, never by
// address. Some names and texts are misspelt; documents depend on the texts
// exactly as they stand.
namespace QXXML_850 {
namespace QXStatXMLTags {

// Document.
static const std::string XML_ELE_XMLMODEL = "xml";
static const std::string XML_VAL_XMLVERSION = "1.0";
static const std::string XML_ATT_XMLNS = "xmlns";
static const std::string XML_VAL_XMLNS =
    "http://www.qxcommon.org/software/analytics/kvat/xml/extension";
static const std::string XML_VAL_SCHEMALOCATION =
    "http://www.qxcommon.org/software/analytics/kvat/xml/extension/StatXML_7.0.xsd";
static const std::string XML_VAL_HEADRIGHT = "Copyright (C) the qxcommon authors";
static const std::string XML_ELE_SATAXML = "StatXML";

// Model and build summary.
static const std::string XML_ELE_PMMLMODEL = "PMMLModel";
static const std::string XML_ATT_MODELTYPE = "modelType";
static const std::string XML_ATT_MODELID = "modelID";
static const std::string XML_ATT_SEGMENTID = "segmentID";
static const std::string XML_ELE_BUILDSETTINGS = "BuildSettings";
static const std::string XML_ELE_PREDICTIVESUMMARY = "PredictiveSummary";
static const std::string XML_ATT_TARGETFIELD = "targetField";
static const std::string XML_ATT_DATANAME = "dataName";
static const std::string XML_ATT_DATAUSAGE = "dataUsage";
static const std::string XML_ELE_PM_COUNTS = "pm:Counts";
static const std::string XML_ATT_TOTALFREQ = "totalFreq";
static const std::string XML_ATT_TOTALCOUNT = "totalCount";
static const std::string XML_ATT_DROPPEDCOUNT = "droppedCount";
static const std::string XML_ATT_BADWEIGHTCOUNT = "badWeightCount";
static const std::string XML_ATT_DROPPEDFREQ = "droppedFreq";
static const std::string XML_ELE_STATISTIC = "Statistic";
static const std::string XML_ELE_COUNTS = "Counts";
static const std::string XML_ATT_COUNT = "count";
static const std::string XML_VAL_ALGORITHMNAME = "algorithmName";
static const std::string XML_VAL_PREDICTORS = "predictors";
static const std::string XML_VAL_MODELSIZE = "modelSize";
static const std::string XML_VAL_ACCURACY = "accuracy";
static const std::string XML_VAL_DATAUSAGE_TRAINING = "training";
static const std::string XML_VAL_DATAUSAGE_TESTING = "testing";
static const std::string XML_VAL_DATAUSAGE_VERIFICATING = "verificating";

// Diagnostics and tests.
static const std::string XML_ELE_MODELDIAGNOSTICS = "ModelDiagnostics";
static const std::string XML_ELE_MODELTESTSTATS = "ModelTestStats";
static const std::string XML_ATT_TESTID = "testID";
static const std::string XML_ATT_TESTTYPE = "testType";
static const std::string XML_VAL_TYPEIII = "III";
static const std::string XML_VAL_MODELEFFECT = "modelEffect";
static const std::string XML_VAL_SUMOFSQUARES = "sumOfSquares";
static const std::string XML_VAL_MEANSQUARE = "meanSquare";
static const std::string XML_ELE_FTEST = "FTest";
static const std::string XML_ATT_FSTATISTIC = "fStatistic";
static const std::string XML_ATT_SIG = "sig";
static const std::string XML_ATT_DF1 = "df1";
static const std::string XML_ATT_DF2 = "df2";

// Training and parameters.
static const std::string XML_ELE_TRAININGSUMMARY = "TrainingSummary";
static const std::string XML_ELE_ITERATIONHISTORY = "IterationHistory";
static const std::string XML_ELE_ITERATION = "Iteration";
static const std::string XML_ATT_ITERATIONNUMBER = "iterationNumber";
static const std::string XML_ELE_PARAMESTIMATES = "ParameterEstimates";
static const std::string XML_ELE_PARAMSTATS = "ParameterStats";
static const std::string XML_ATT_BLOCKNUM = "block";
static const std::string XML_ATT_PARAMINDEX = "paramIndex";
static const std::string XML_ATT_PARAMNAME = "paramName";
static const std::string XML_ATT_PARAMLABEL = "paramLabel";
static const std::string XML_ATT_ESTIMATE = "estimate";
static const std::string XML_ATT_EXPESTIMATE = "expEstimate";
static const std::string XML_ATT_STDERROR = "stdError";
static const std::string XML_ATT_CONFINTERVALLOWER = "confIntervalLower";
static const std::string XML_ATT_CONFINTERVALUPPER = "confIntervalUpper";
static const std::string XML_ATT_TTEST = "tTest";
static const std::string XML_ATT_CHISQUARE = "chiSquare";
static const std::string XML_ATT_ISREDUNDANT = "isRedundant";
static const std::string XML_ATT_EXPCILOWER = "expCILower";
static const std::string XML_ATT_EXPCIUPPER = "expCIUpper";
static const std::string XML_VAL_FIXEDEFFECTINDEX = "fixedEffectIndex";
static const std::string XML_ATT_ZTEST = "zTest";

// Effect sizes.
static const std::string XML_VAL_EFFECTSIZE = "effectSize";
static const std::string XML_VAL_LOWERCIEFFECTSIZE = "lowerCIEffectSize";
static const std::string XML_VAL_UPPERCIEFFECTSIZE = "upperCIEffectSize";
static const std::string XML_VAL_ETASQUARED = "etaSquared";
static const std::string XML_VAL_LOWERCIETASQUARED = "lowerCIEtaSquared";
static const std::string XML_VAL_UPPERCIETASQUARED = "upperCIEtaSquared";
static const std::string XML_VAL_PARTIALETASQUARED = "partialEtaSquared";
static const std::string XML_VAL_LOWERCIPARTIALETASQUARED = "lowerCIPartialEtaSquared";
static const std::string XML_VAL_UPPERCIPARTIALETASQUARED = "upperCIPartialEtaSquared";

// Data sections and coordinates.
static const std::string XML_ELE_COORDINATES = "Coordinates";
static const std::string XML_ATT_STATISTIC = "statistic";
static const std::string XML_VAL_STATISTIC = "statistic";
static const std::string XML_VAL_OBSERVED = "observed";
static const std::string XML_ELE_BIVARIATEDATE = "BivariateData";
static const std::string XML_ELE_UNIVARIATEDATE = "UnivariateData";
static const std::string XML_ELE_MULTIVARIATEDATE = "MultivariateData";
static const std::string XML_ELE_STRUCTUREDDATE = "StructuredData";
static const std::string XML_ELE_RECORDINFO = "RecordInfo";
static const std::string XML_ATT_RECORDID = "recordId";
static const std::string XML_ATT_RECORDLABEL = "recordLabel";

// Messages.
static const std::string XML_ELE_MESSAGE = "Message";
static const std::string XML_VAL_WARNING = "warning";
static const std::string XML_VAL_ERROR = "error";
static const std::string XML_VAL_BUILDMODELFAILEDERR = "BuildModelFailedErr";

// Printable values and formats.
static const std::string XML_ELE_PRINTABLE = "Printable";
static const std::string XML_ELE_PRINTABLELIST = "PrintableList";
static const std::string XML_ATT_PATTERN = "pattern";
static const std::string XML_ATT_ISKEY = "isKey";
static const std::string XML_ATT_MAPID = "mapId";
static const std::string XML_VAL_TRUE = "true";
static const std::string XML_VAL_FALSE = "false";
static const std::string XML_ELE_PRINTABLEVLIST = "PrintableVList";
static const std::string XML_ELE_PRINTABLEVALUE = "PrintableValue";
static const std::string XML_ATT_STORAGE = "storage";
static const std::string XML_VAL_REAL = "real";
static const std::string XML_VAL_STRING = "string";
static const std::string XML_ELE_STRINGFORMAT = "StringFormat";
static const std::string XML_ELE_NUMBERFORMAT = "NumberFormat";
static const std::string XML_ATT_WIDTH = "width";
static const std::string XML_ATT_FORMATTYPE = "formatType";
static const std::string XML_VAL_STANDARD = "standard";
static const std::string XML_ATT_DECIMALPLACES = "decimalPlaces";
static const std::string XML_ATT_DECIMALSYMBOL = "decimalSymbol";
static const std::string XML_ATT_GROUPINGSYMBOL = "groupingSymbol";
static const std::string XML_VAL_LOCAL = "local";
static const std::string XML_ATT_HEXADECIMAL = "hexadecimal";

// Field and parameter labels.
static const std::string XML_ELE_FIELDINFO = "FieldInfo";
static const std::string XML_ATT_FIELDNAME = "fieldName";
static const std::string XML_ATT_FIELDVALUE = "fieldValue";
static const std::string XML_ATT_ISNULL = "isNull";
static const std::string XML_ELE_COVARIATE = "Covariate";
static const std::string XML_ATT_POWER = "power";
static const std::string XML_ELE_FACTOR = "Factor";
static const std::string XML_ATT_NEST = "nest";
static const std::string XML_ELE_REGRESSIONPARAM = "RegressionParameter";
static const std::string XML_ATT_ISINTERCEPT = "isIntercept";
static const std::string XML_ELE_LABEL = "Label";

// Matrices and structured values.
static const std::string XML_ELE_COORDINATESGROUP = "CoordinatesGroup";
static const std::string XML_ELE_MULTIVARIATEDATA = "MultivariateData";
static const std::string XML_ELE_ROWCOLLABELS = "RowColLabels";
static const std::string XML_ATT_DIMENTION = "dimension";
static const std::string XML_VAL_ROW = "row";
static const std::string XML_VAL_COL = "col";
static const std::string XML_VAL_BOTH = "both";
static const std::string XML_ELE_MATRIXLABELS = "MatrixLabels";
static const std::string XML_ELE_SEGMENTINFO = "SegmentInfo";
static const std::string XML_ELE_INDICES = "Indices";
static const std::string XML_ELE_MATRIX = "Matrix";
static const std::string XML_ATT_NBROWS = "nbRows";
static const std::string XML_ATT_NBCOLS = "nbCols";
static const std::string XML_ATT_ROWMAJOR = "rowMajor";
static const std::string XML_VAL_SYMMETRIC = "symmetric";
static const std::string XML_VAL_DIAGONAL = "diagonal";
static const std::string XML_VAL_ANY = "any";
static const std::string XML_ELE_SEGMETNTDATA = "SegmentData";
static const std::string XML_ELE_STRUCTUREDVALUE = "StructuredValue";
static const std::string XML_ELE_ATTRIBUTE = "Attribute";
static const std::string XML_ELE_LISTVALUE = "ListValue";
static const std::string XML_VAL_FIELDS = "Fields";
static const std::string XML_VAL_NESTINGLEVELS = "NestingLevels";
static const std::string XML_ELE_STRINGMAP = "StringMap";
static const std::string XML_ELE_MAPENTRY = "MapEntry";
static const std::string XML_ATT_MAPNAME = "name";

// Descriptive models.
static const std::string XML_ELE_DESMODEL = "DescriptiveModel";
static const std::string XML_ELE_BIVARSUMMS = "BivariateSummaries";
static const std::string XML_ELE_BIVARSUMM = "BivariateSummarie";
static const std::string XML_ATT_FIELDA = "fieldA";
static const std::string XML_ATT_FIELDB = "fieldB";
static const std::string XML_ATT_DEPENDFIELD = "dependentField";
static const std::string XML_VAL_ETA = "eta";
static const std::string XML_VAL_ONEWAYAVOFT = "oneWayAnovaFTest";
static const std::string XML_VAL_CONDIMEAN = "conditionalMean";
static const std::string XML_VAL_BINSCAPLOT = "binnedScatterPlot";
static const std::string XML_VAL_STATSEACHCAT = "statisticWithinEachCategory";
static const std::string XML_VAL_VARIANCE = "variance";
static const std::string XML_VAL_PEARSONSR = "pearsonsR";
static const std::string XML_VAL_TOTALPAIRS = "totalPairs";
static const std::string XML_VAL_COVARIANCE = "covariance";
static const std::string XML_VAL_CRAMERSV = "cramersV";
static const std::string XML_VAL_SPEARMANCORRELATION = "spearmanCorrelationh";
static const std::string XML_VAL_PEARSONCHISQUARE = "pearsonChiSquare";
static const std::string XML_VAL_THEORETICALFREQUENCIES = "theoreticalFrequencies";
static const std::string XML_VAL_CHITEST = "ChiTest";
static const std::string XML_VAL_Crosstabulation = "Crosstabulation";
static const std::string XML_VAL_frequency = "frequency";

}  // namespace QXStatXMLTags
}  // namespace QXXML_850

#endif  // QX_DOCUMENTS_QXSTATXMLTAGS_H
