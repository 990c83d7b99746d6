#ifndef QX_DOCUMENTS_QXPMMLTAGS_H
#define QX_DOCUMENTS_QXPMMLTAGS_H

#include <string>

// The vocabulary of PMML documents: element names (XML_ELE_), attribute names
// (XML_ATT_) and values (XML_VAL_, XML_EXT_). The constants for versions 3.2,
// 4.0 and 4.1 stay for the components; the exporter writes 4.3 (the suffix 42
// holds the texts of 4.3). The constants have internal linkage, so every
// source unit that includes this header holds its own copy, built when the
// library loads: compare them by text, never by address. Misspelt names stand
// as they are; the texts are what the documents carry.
namespace QXXML_850 {
namespace QXPMMLTags {

// Root and versions.
static const std::string XML_ELE_PMMLMODEL = "PMML";
static const std::string XML_ATT_VERSION = "version";
static const std::string XML_VAL_PMMLVERSION = "3.2";
static const std::string XML_VAL_PMMLVERSION40 = "4.0";
static const std::string XML_VAL_PMMLVERSION41 = "4.1";
static const std::string XML_VAL_PMMLVERSION42 = "4.3";
static const std::string XML_ATT_XMLNS = "xmlns";
static const std::string XML_VAL_PMMLNAMESPACE = "http://www.dmg.org/PMML-3_2";
static const std::string XML_VAL_PMMLNAMESPACE40 = "http://www.dmg.org/PMML-4_0";
static const std::string XML_VAL_PMMLNAMESPACE41 = "http://www.dmg.org/PMML-4_1";
static const std::string XML_VAL_PMMLNAMESPACE42 = "http://www.dmg.org/PMML-4_3";
static const std::string XML_ATT_XMLNSXSI = "xmlns:xsi";
static const std::string XML_VAL_SCHEMAINSTANCE = "http://www.w3.org/2001/XMLSchema-instance";
static const std::string XML_ATT_SCHEMALOC = "xsi:schemaLocation";
static const std::string XML_VAL_SCHEMAFILE = "http://www.dmg.org/PMML-3_2 pmml-3-2.xsd";
static const std::string XML_VAL_SCHEMAFILE40 = "http://www.dmg.org/PMML-4_0 pmml-4-0.xsd";
static const std::string XML_VAL_SCHEMAFILE41 = "http://www.dmg.org/PMML-4_1 pmml-4-1.xsd";
static const std::string XML_VAL_SCHEMAFILE42 = "http://www.dmg.org/PMML-4_3 pmml-4-3.xsd";

// Header.
static const std::string XML_ELE_HEADER = "Header";
static const std::string XML_ATT_HEADRIGHT = "copyright";
static const std::string XML_VAL_HEADRIGHT = "Copyright (C) the qxcommon authors";
static const std::string XML_ATT_DESCRIPTION = "description";
static const std::string XML_ELE_APPLICATION = "Application";
static const std::string XML_ELE_ANNOTATION = "Annotation";
static const std::string XML_ATT_NAME = "name";
static const std::string XML_ELE_TIMESTAMP = "Timestamp";

// Data dictionary.
static const std::string XML_ELE_MININGBUILDTASK = "MiningBuildTask";
static const std::string XML_ELE_DATADICTIONARY = "DataDictionary";
static const std::string XML_ATT_NUMBEROFFIELDS = "numberOfFields";
static const std::string XML_ELE_DATAFIELD = "DataField";
static const std::string XML_ATT_DISPLAYNAME = "displayName";
static const std::string XML_ATT_OPTYPE = "optype";
static const std::string XML_VAL_CATEGORICAL = "categorical";
static const std::string XML_VAL_CONTINUOUS = "continuous";
static const std::string XML_VAL_ORDINAL = "ordinal";
static const std::string XML_ELE_VALUE = "Value";
static const std::string XML_ATT_VALUE = "value";
static const std::string XML_ATT_DISPLAYVALUE = "displayValue";
static const std::string XML_ATT_DATATYPE = "dataType";
static const std::string XML_VAL_STRING = "string";
static const std::string XML_VAL_FLOAT = "float";
static const std::string XML_VAL_DOUBLE = "double";
static const std::string XML_VAL_INTEGER = "integer";
static const std::string XML_VAL_DATE = "date";
static const std::string XML_VAL_TIME = "time";
static const std::string XML_VAL_DATETIME = "dateTime";
static const std::string XML_VAL_DATEDAYSINCE1970 = "dateDaysSince[1970]";
static const std::string XML_VAL_TIMESECONDS = "timeSeconds";
static const std::string XML_VAL_DATETIMESECONDSINCE1970 = "dateTimeSecondsSince[1970]";
static const std::string XML_ATT_PROPERTY = "property";
static const std::string XML_VAL_MISSING = "missing";
static const std::string XML_VAL_VALID = "valid";
static const std::string XML_VAL_INVALID = "invalid";
static const std::string XML_ATT_STORAGETYPE = "x-storageType";
static const std::string XML_EXT_MEASURE = "measure";
static const std::string XML_EXT_XMEASURE = "x-measure";

// Extensions.
static const std::string XML_ELE_EXTENSION = "Extension";
static const std::string XML_ATT_EXTENDER = "extender";
static const std::string XML_VAL_KVATCOM = "qxcommon";
static const std::string XML_VAL_MISSINGINTERVAL = "missingInterval";
static const std::string XML_VAL_NAME_MSLO = "invalidRangeLower";
static const std::string XML_VAL_NAME_MSUP = "invalidRangeUpper";
static const std::string XML_VAL_FLAGTYPE = "flagTypeTrueValue";
static const std::string XML_VAL_NOSPACETRIM = "noSpaceTrim";
static const std::string XML_VAL_NOSPACE_TRUE = "true";

// Model quality and explanation.
static const std::string XML_ATT_RSQUARED = "r-squared";
static const std::string XML_ATT_ADJRSQUARED = "adj-r-squared";
static const std::string XML_ATT_SUMSQUAREDERROR = "sumSquaredError";
static const std::string XML_ATT_SUMSQUAREDREGRESSION = "sumSquaredRegression";
static const std::string XML_ATT_NUMOFRECORDS = "numOfRecords";
static const std::string XML_ATT_NUMOFRECORDSWEIGHTED = "numOfRecordsWeighted";
static const std::string XML_ATT_NUMOFPREDICTORS = "numOfPredictors";
static const std::string XML_ATT_FSTATISTIC = "fStatistic";
static const std::string XML_ATT_AIC = "AIC";
static const std::string XML_ATT_BIC = "BIC";
static const std::string XML_ATT_AICC = "AICc";
static const std::string XML_ELE_CONFUSIONMATRIX = "ConfusionMatrix";
static const std::string XML_ELE_CLASSLABELS = "ClassLabels";
static const std::string XML_ELE_MODELEXPLANATION = "ModelExplanation";
static const std::string XML_ELE_PREDICTIVEMODEQUALITY = "PredictiveModelQuality";
static const std::string XML_ATT_TARGETFIELD = "targetField";
static const std::string XML_ELE_LIFTDATA = "LiftData";
static const std::string XML_ELE_MODELLIFTGRAPH = "ModelLiftGraph";
static const std::string XML_ELE_LIFTGRAPH = "LiftGraph";
static const std::string XML_ELE_XCOORDINATES = "XCoordinates";
static const std::string XML_ELE_YCOORDINATES = "YCoordinates";
static const std::string XML_ELE_BOUNDARYVALUES = "BoundaryValues";
static const std::string XML_ELE_BOUNDARYMEANVALUES = "BoundaryValueMeans";
static const std::string XML_ATT_TARGETFIELDVALUE = "targetFieldValue";
static const std::string XML_ATT_TARGETFIELDDISPLAYVALUE = "targetFieldDisplayValue";

// Transformations.
static const std::string XML_ELE_TRANSDICT = "TransformationDictionary";
static const std::string XML_ELE_LOCALTRANSFORMATIONS = "LocalTransformations";
static const std::string XML_ELE_NORMCONTINUOUS = "NormContinuous";
static const std::string XML_ELE_NORMDISCRETE = "NormDiscrete";
static const std::string XML_ELE_MAPVALUES = "MapValues";
static const std::string XML_ELE_LINEARNORM = "LinearNorm";
static const std::string XML_ATT_ORIG = "orig";
static const std::string XML_ATT_NORM = "norm";
static const std::string XML_ELE_APPLY = "Apply";
static const std::string XML_ATT_FUNCTION = "function";
static const std::string XML_ELE_DERIVEDFIELD = "DerivedField";
static const std::string XML_ELE_DERIVEDFIELDS = "DerivedFields";
static const std::string XML_ELE_FIELDREF = "FieldRef";
static const std::string XML_ATT_FIELD = "field";
static const std::string XML_ELE_DISCRETIZE = "Discretize";
static const std::string XML_ELE_DISCRETIZEBIN = "DiscretizeBin";
static const std::string XML_ATT_BINVALUE = "binValue";
static const std::string XML_ELE_INTERVAL = "Interval";
static const std::string XML_ATT_CLOSURE = "closure";
static const std::string XML_VAL_OPENOPEN = "openOpen";
static const std::string XML_VAL_OPENCLOSED = "openClosed";
static const std::string XML_VAL_CLOSEDOPEN = "closedOpen";
static const std::string XML_VAL_CLOSEDCLOSED = "closedClosed";
static const std::string XML_ATT_LEFTMARGIN = "leftMargin";
static const std::string XML_ATT_RIGHTMARGIN = "rightMargin";

// Model kinds.
static const std::string XML_ELE_ASSOCIATIONMODEL = "AssociationModel";
static const std::string XML_ELE_CLUSTERINGMODEL = "ClusteringModel";
static const std::string XML_ELE_GENERALREGRESSIONMODEL = "GeneralRegressionModel";
static const std::string XML_ELE_MININGMODEL = "MiningModel";
static const std::string XML_ELE_NAIVEBAYESMODEL = "NaiveBayesModel";
static const std::string XML_ELE_NEURALNETWORK = "NeuralNetwork";
static const std::string XML_ELE_REGRESSIONMODEL = "RegressionModel";
static const std::string XML_ELE_RULESETMODEL = "RuleSetModel";
static const std::string XML_ELE_SEQUENCEMODEL = "SequenceModel";
static const std::string XML_ELE_SUPPORTVECTORMACHINEMODEL = "SupportVectorMachineModel";
static const std::string XML_ELE_TEXTMODEL = "TextModel";
static const std::string XML_ELE_TIMESERIESMODEL = "TimeSeriesModel";
static const std::string XML_ELE_TREEMODEL = "TreeModel";
static const std::string XML_ELE_BAYESNETMODEL = "BayesNetModel";
static const std::string XML_ELE_NEARESTNEIGHBORMODEL = "NearestNeighborModel";

// Segmentation.
static const std::string XML_ELE_SEGMENTATION = "Segmentation";
static const std::string XML_ELE_SEGMENT = "Segment";
static const std::string XML_ATT_ID = "id";
static const std::string XML_ATT_MULTIPLEMODELMETHOD = "multipleModelMethod";
static const std::string XML_VAL_MAJORITYVOTE = "majorityVote";
static const std::string XML_VAL_WEIGHTEDMAJORITYVOTE = "weightedMajorityVote";
static const std::string XML_VAL_AVERAGE = "average";
static const std::string XML_VAL_WEIGHTEDAVERAGE = "weightedAverage";
static const std::string XML_VAL_MEDIAN = "median";
static const std::string XML_VAL_MAX = "max";
static const std::string XML_VAL_SUM = "sum";
static const std::string XML_VAL_SELECTFIRST = "selectFirst";
static const std::string XML_VAL_SELECTALL = "selectAll";
static const std::string XML_VAL_WEIGHTEDMEDIAN = "weightedMedian";

// Model attributes.
static const std::string XML_ATT_MODELID = "modelID";
static const std::string XML_ATT_ACTIVEMODELID = "activeModelID";
static const std::string XML_ATT_IS_SCORABLE = "isScorable";
static const std::string XML_ATT_FUNCTIONNAME = "functionName";
static const std::string XML_VAL_CLASSIFICATION = "classification";
static const std::string XML_VAL_REGRESSION = "regression";
static const std::string XML_ATT_MODELNAME = "modelName";
static const std::string XML_ATT_ALGORITHMNAME = "algorithmName";
static const std::string XML_ATT_FIELDNAME = "fieldName";

// Mining schema.
static const std::string XML_ELE_MININGSCHEMA = "MiningSchema";
static const std::string XML_ELE_MININGFIELD = "MiningField";
static const std::string XML_ATT_MININGFIELDNAME = "name";
static const std::string XML_ATT_MININGFIELDUSE = "usageType";
static const std::string XML_VAL_MININGFIELDACT = "active";
static const std::string XML_VAL_MININGFIELDPRED = "predicted";
static const std::string XML_VAL_MININGFIELDTARGET = "target";
static const std::string XML_ATT_MISSINGVALUEREPLACE = "missingValueReplacement";
static const std::string XML_ATT_MISSINGVALUETREAT = "missingValueTreatment";
static const std::string XML_VAL_ASIS = "asIs";
static const std::string XML_VAL_ASVALUE = "asValue";
static const std::string XML_VAL_ASMEAN = "asMean";
static const std::string XML_VAL_ASMODE = "asMode";
static const std::string XML_ATT_OUTLIERS = "outliers";
static const std::string XML_VAL_ASMISSINGVALUES = "asMissingValues";
static const std::string XML_VAL_ASEXTREMEVALUES = "asExtremeValues";
static const std::string XML_ATT_LOWVALUE = "lowValue";
static const std::string XML_ATT_HIGHVALUE = "highValue";
static const std::string XML_ATT_IMPORTANCE = "importance";

// Output.
static const std::string XML_ELE_OUTPUT = "Output";
static const std::string XML_ELE_OUTPUTFIELD = "OutputField";
static const std::string XML_ATT_FEATURE = "feature";
static const std::string XML_VAL_ENTITYID = "entityId";
static const std::string XML_VAL_PREDICTEDVALUE = "predictedValue";
static const std::string XML_VAL_PROBABILITY = "probability";
static const std::string XML_VAL_RESIDUAL = "residual";
static const std::string XML_VAL_STANDARDERROR = "standardError";
static const std::string XML_VAL_TARGETFIELD = "targetField";
static const std::string XML_VAL_RULEFEATURE = "ruleFeature";

// Association rules and ranking.
static const std::string XML_ATT_ANTECEDENT = "antecedent";
static const std::string XML_ATT_CONSEQUENT = "consequent";
static const std::string XML_ATT_RULE = "rule";
static const std::string XML_ATT_RULEID = "ruleId";
static const std::string XML_ATT_CONFIDENCE = "confidence";
static const std::string XML_ATT_SUPPORT = "support";
static const std::string XML_ATT_LIFT = "lift";
static const std::string XML_VAL_ALGORITHM = "algorithm";
static const std::string XML_ATT_RECOMMENDATION = "recommendation";
static const std::string XML_ATT_EXCLUSIVERECOMMENDATION = "exclusiveRecommendation";
static const std::string XML_ATT_RULEASSOCIATION = "ruleAssociation";
static const std::string XML_VAL_RANKBASIS = "rankBasis";
static const std::string XML_VAL_RANKORDER = "rankOrder";
static const std::string XML_ATT_DESENDING = "descending";
static const std::string XML_ATT_ASCENDING = "ascending";
static const std::string XML_VAL_ISMULTIVALUED = "isMultiValued";

// Model statistics.
static const std::string XML_ELE_MODELSTATS = "ModelStats";
static const std::string XML_ELE_MODELANOVA = "Anova";
static const std::string XML_ELE_MODELANOVAROW = "AnovaRow";
static const std::string XML_ATT_SUMOFSQUARES = "sumOfSquares";
static const std::string XML_ATT_DEGREEESOFREEDOM = "degreesOfFreedom";
static const std::string XML_ATT_MEANSOFSQUARES = "meanOfSquares";
static const std::string XML_ATT_FVALUE = "fValue";
static const std::string XML_ATT_PVALUE = "pValue";
static const std::string XML_ELE_UNIVARIATESTATS = "UnivariateStats";
static const std::string XML_ELE_ARRAY = "Array";
static const std::string XML_ATT_LOWER_N = "n";
static const std::string XML_ATT_TYPE = "type";
static const std::string XML_VAL_REAL = "real";
static const std::string XML_VAL_INT = "int";
static const std::string XML_ELE_MATRIX = "Matrix";
static const std::string XML_ATT_KIND = "kind";
static const std::string XML_VAL_DIAGONAL = "diagonal";
static const std::string XML_ELE_COVARIANCES = "Covariances";
static const std::string XML_ELE_PARTITION = "Partition";
static const std::string XML_ELE_PARTITIONFIELDSTATS = "PartitionFieldStats";
static const std::string XML_ATT_UPPER_N = "N";
static const std::string XML_ELE_COUNTS = "Counts";
static const std::string XML_ATT_TOTALFREQ = "totalFreq";
static const std::string XML_ATT_INVALIDFREQ = "invalidFreq";
static const std::string XML_ATT_MISSINGFREQ = "missingFreq";
static const std::string XML_ATT_CARDINALITY = "cardinality";
static const std::string XML_ELE_DISCRSTATS = "DiscrStats";
static const std::string XML_ELE_NUMERICINFO = "NumericInfo";
static const std::string XML_ATT_MINIMUM = "minimum";
static const std::string XML_ATT_MAXIMUM = "maximum";
static const std::string XML_ATT_MEAN = "mean";
static const std::string XML_ATT_STDDEV = "standardDeviation";
static const std::string XML_ATT_MEDIAN = "median";
static const std::string XML_ELE_CONTSTATS = "ContStats";
static const std::string XML_VAL_CONTAINERMODEL = "containerModel";

// Regression.
static const std::string XML_ELE_PARAMETERLIST = "ParameterList";
static const std::string XML_ELE_PARAMETER = "Parameter";
static const std::string XML_ATT_LABEL = "label";
static const std::string XML_ELE_FACTORLIST = "FactorList";
static const std::string XML_ELE_PREDICTOR = "Predictor";
static const std::string XML_ELE_COVARIATELIST = "CovariateList";
static const std::string XML_ELE_PPMATRIX = "PPMatrix";
static const std::string XML_ELE_PPCELL = "PPCell";
static const std::string XML_ATT_PREDICTORNAME = "predictorName";
static const std::string XML_ATT_PARAMETERNAME = "parameterName";
static const std::string XML_ATT_TARGETCATEGORY = "targetCategory";
static const std::string XML_ELE_PCOVMATRIX = "PCovMatrix";
static const std::string XML_VAL_MODEL = "model";
static const std::string XML_VAL_ROBUST = "robust";
static const std::string XML_ATT_MODELDF = "modelDF";
static const std::string XML_ATT_TARGETREFERENCECATEGORY = "targetReferenceCategory";
static const std::string XML_ATT_MODELTYPE = "modelType";
static const std::string XML_VAL_GENERALLINEAR = "generalLinear";
static const std::string XML_VAL_MULTINOMIALLOGISTIC = "multinomialLogistic";
static const std::string XML_VAL_ORDINALMULTINOMIAL = "ordinalMultinomial";
static const std::string XML_VAL_GENERALIZEDLINEAR = "generalizedLinear";
static const std::string XML_VAL_COXREGRESSION = "CoxRegression";
static const std::string XML_ELE_PCOVCELL = "PCovCell";
static const std::string XML_ATT_TROW = "tRow";
static const std::string XML_ATT_TCOL = "tCol";
static const std::string XML_ATT_PROW = "pRow";
static const std::string XML_ATT_PCOL = "pCol";
static const std::string XML_ELE_PARAMMATRIX = "ParamMatrix";
static const std::string XML_ELE_PCELL = "PCell";
static const std::string XML_ATT_BETA = "beta";
static const std::string XML_ATT_DF = "df";

// Neural networks.
static const std::string XML_ATT_ACTIVATIONFUNCTION = "activationFunction";
static const std::string XML_VAL_RADIALBASIS = "radialBasis";
static const std::string XML_VAL_CLUSTERING = "clustering";
static const std::string XML_ELE_NEURALINPUTS = "NeuralInputs";
static const std::string XML_ELE_NEURALINPUT = "NeuralInput";
static const std::string XML_ELE_NEURALLAYER = "NeuralLayer";
static const std::string XML_ATT_NUMBEROFNEURONS = "numberOfNeurons";
static const std::string XML_ATT_NORMALIZATIONMETHOD = "normalizationMethod";
static const std::string XML_VAL_SIMPLEMAX = "simplemax";
static const std::string XML_VAL_SOFTMAX = "softmax";
static const std::string XML_ELE_NEURON = "Neuron";
static const std::string XML_ATT_WIDTH = "width";
static const std::string XML_ATT_BIAS = "bias";
static const std::string XML_VAL_TANH = "tanh";
static const std::string XML_VAL_IDENTITY = "identity";
static const std::string XML_ATT_NUMBEROFLAYERS = "numberOfLayers";
static const std::string XML_VAL_LOGISTIC = "logistic";
static const std::string XML_ELE_CON = "Con";
static const std::string XML_ATT_WEIGHT = "weight";
static const std::string XML_ELE_NEURALOUTPUTS = "NeuralOutputs";
static const std::string XML_ELE_NEURALOUTPUT = "NeuralOutput";
static const std::string XML_ATT_OUTPUTNEURON = "outputNeuron";
static const std::string XML_ATT_KOHONENDEMX = "x-kohonenXDimension";
static const std::string XML_ATT_KOHONENDEMY = "x-kohonenYDimension";
static const std::string XML_VAL_KOHONENXDIMENSION = "kohonenXDimension";
static const std::string XML_VAL_KOHONENYDIMENSION = "kohonenYDimension";
static const std::string XML_ATT_THRESHOLD = "threshold";
static const std::string XML_VAL_THRESHOLD = "threshold";
static const std::string XML_VAL_EXPONENTIAL = "exponential";
static const std::string XML_VAL_RECIPROCAL = "reciprocal";
static const std::string XML_VAL_SQUARE = "square";
static const std::string XML_VAL_GAUSS = "Gauss";
static const std::string XML_VAL_SINE = "sine";
static const std::string XML_VAL_COSINE = "cosine";
static const std::string XML_VAL_ELLIOTT = "Elliott";
static const std::string XML_VAL_ARCTAN = "arctan";
static const std::string XML_VAL_RECTIFIER = "rectifier";

// Mapping and predicates.
static const std::string XML_ATT_FROM = "from";
static const std::string XML_ATT_MISSREPVALUE = "mapMissingTo";
static const std::string XML_ELE_FIELDCOLPAIR = "FieldColumnPair";
static const std::string XML_ATT_DEFAULTVALUE = "defaultValue";
static const std::string XML_ELE_INLTABLE = "InlineTable";
static const std::string XML_ELE_ROW = "row";
static const std::string XML_ELE_IN = "in";
static const std::string XML_ELE_OUT = "out";
static const std::string XML_ELE_PREDICATE = "SimplePredicate";
static const std::string XML_ELE_COMPOUNDPREDICATE = "CompoundPredicate";
static const std::string XML_ELE_SETPREDICATE = "SimpleSetPredicate";
static const std::string XML_ELE_TRUE = "True";
static const std::string XML_ELE_FALSE = "False";
static const std::string XML_ATT_BOOLEANOPERATOR = "booleanOperator";
static const std::string XML_VAL_OR = "or";
static const std::string XML_VAL_AND = "and";
static const std::string XML_VAL_XOR = "xor";
static const std::string XML_VAL_SURROGATE = "surrogate";
static const std::string XML_ATT_OPERATOR = "operator";
static const std::string XML_VAL_ISMISSING = "isMissing";
static const std::string XML_VAL_ISNOTMISSING = "isNotMissing";
static const std::string XML_VAL_EQUAL = "equal";
static const std::string XML_VAL_NOTEQUAL = "notEqual";
static const std::string XML_VAL_LESSTHAN = "lessThan";
static const std::string XML_VAL_LESSOREQUAL = "lessOrEqual";
static const std::string XML_VAL_GREATERTHAN = "greaterThan";
static const std::string XML_VAL_GREATEROREQUAL = "greaterOrEqual";
static const std::string XML_ATT_N = "n";

}  // namespace QXPMMLTags
}  // namespace QXXML_850

#endif  // QX_DOCUMENTS_QXPMMLTAGS_H
