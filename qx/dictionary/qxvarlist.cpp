#include "qx/dictionary/qxvarlist.h"

#include <algorithm>
#include <cstdio>
#include <type_traits>

#include "qx/dictionary/internal/persist.h"
#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxcontvar.h"
#include "qx/dictionary/qxweightvar.h"
#include "qx/foundation/qxcomponentdisplay.h"
#include "qx/markup/xmlelement.h"

namespace QXXML_850 {

namespace {

using Var = IQXVariable;

}  // namespace

QXVarList::QXVarList()
    : nContVars(0),
      nCatVars(0),
      targetIndex(-1),
      firstResponseIndex(-1),
      weightIndex(-1),
      listwiseDeletion(false),
      unweightedCount(0.0),
      weightedCount(0.0),
      droppedCount(0.0),
      badWeightCount(0.0),
      weightedDroppedCount(0.0),
      fieldFormats(nullptr),
      namesIndexed(false) {}

QXVarList::QXVarList(const QXVarList& other) : QXVarList() {
  CopyFrom(other);
  listwiseDeletion = other.listwiseDeletion;
}

QXVarList& QXVarList::operator=(const QXVarList& other) {
  if (this != &other) CopyFrom(other);
  return *this;
}

QXVarList::~QXVarList() {
  Clear();
  delete fieldFormats;
}

void QXVarList::CopyFrom(const QXVarList& other) {
  std::vector<IQXVariable*> copies;
  copies.reserve(other.variables.size());
  for (const IQXVariable* variable : other.variables)
    copies.push_back(variable != nullptr ? variable->Clone() : nullptr);
  XMLElement* element = other.fieldFormats != nullptr ? other.fieldFormats->Clone() : nullptr;
  Clear();
  delete fieldFormats;
  variables.swap(copies);
  fieldFormats = element;
  nContVars = other.nContVars;
  nCatVars = other.nCatVars;
  targetIndex = other.targetIndex;
  firstResponseIndex = other.firstResponseIndex;
  weightIndex = other.weightIndex;
  unweightedCount = other.unweightedCount;
  weightedCount = other.weightedCount;
  droppedCount = other.droppedCount;
  badWeightCount = other.badWeightCount;
  weightedDroppedCount = other.weightedDroppedCount;
  responses = other.responses;
}

void QXVarList::Clear() {
  for (IQXVariable* variable : variables)
    delete variable;
  variables.clear();
  namesIndexed = false;
}

bool QXVarList::InRange(int index) const {
  return index >= 0 && static_cast<size_t>(index) < variables.size();
}

size_t QXVarList::Size() const {
  return variables.size();
}

int QXVarList::GetNumContVar() const {
  return nContVars;
}

int QXVarList::GetNumCatVar() const {
  return nCatVars;
}

const IQXVariable* QXVarList::GetVarAt(int index) const {
  return InRange(index) ? variables[index] : nullptr;
}

IQXVariable* QXVarList::GetVarAt(int index) {
  // The caller may change the variable, its name included.
  namesIndexed = false;
  return InRange(index) ? variables[index] : nullptr;
}

const IQXEncoder* QXVarList::GetEncoderAt(int index) const {
  const IQXVariable* variable = GetVarAt(index);
  return variable != nullptr ? variable->GetEncoder() : nullptr;
}

IQXEncoder* QXVarList::GetEncoderAt(int index) {
  IQXVariable* variable = InRange(index) ? variables[index] : nullptr;
  return variable != nullptr ? variable->GetEncoder() : nullptr;
}

void QXVarList::IndexNames() const {
  names.clear();
  names.reserve(variables.size());
  for (size_t i = 0; i < variables.size(); ++i) {
    if (variables[i] != nullptr)
      names.emplace(variables[i]->GetVariableName(), static_cast<int>(i));
  }
  namesIndexed = true;
}

int QXVarList::FindVariable(const std::string& name) const {
  for (int attempt = 0; attempt < 2; ++attempt) {
    if (!namesIndexed) IndexNames();
    const auto found = names.find(name);
    if (found == names.end()) return -1;
    const IQXVariable* variable = GetVarAt(found->second);
    if (variable != nullptr && variable->GetVariableName() == name) return found->second;
    // A name changed behind the index: look again in a new one.
    namesIndexed = false;
  }
  return -1;
}

const IQXVariable* QXVarList::GetVariable(const std::string& name) const {
  return GetVarAt(FindVariable(name));
}

IQXVariable* QXVarList::GetVariable(const std::string& name) {
  return GetVarAt(FindVariable(name));
}

QXVarList::VariableRole QXVarList::GetVariableRole(int index) const {
  const IQXVariable* variable = GetVarAt(index);
  return variable != nullptr ? variable->GetVariableRole() : IQXVariable::RoleUndefined;
}

int QXVarList::GetNumInputVars() const {
  return static_cast<int>(std::count_if(variables.begin(), variables.end(), [](const Var* v) {
    return v != nullptr && v->GetVariableRole() == Var::RoleInput;
  }));
}

int QXVarList::GetNumPossibleInputVars() const {
  return static_cast<int>(std::count_if(variables.begin(), variables.end(), [](const Var* v) {
    return v != nullptr && v->GetVariableRole() == Var::RolePossibleInput;
  }));
}

std::vector<int> QXVarList::GetNInputCats() const {
  std::vector<int> counts;
  for (const IQXVariable* variable : variables) {
    if (variable != nullptr && variable->GetVariableRole() == Var::RoleInput) {
      counts.push_back(variable->GetNumberOfCategories());
    }
  }
  return counts;
}

void QXVarList::GetVarNames(std::vector<std::string>& inputs,
                            std::vector<std::string>& responseNames) const {
  inputs.clear();
  responseNames.clear();
  for (const IQXVariable* variable : variables) {
    if (variable == nullptr) continue;
    const VariableRole role = variable->GetVariableRole();
    if (role == Var::RoleInput) inputs.push_back(variable->GetVariableName());
    if (role == Var::RoleTargetResponse) responseNames.push_back(variable->GetVariableName());
  }
}

int QXVarList::GetTargetIndex() const {
  return targetIndex;
}

int QXVarList::GetFirstResponseIndex() const {
  return firstResponseIndex;
}

int QXVarList::GetWeightIndex() const {
  return weightIndex;
}

const std::vector<int>& QXVarList::GetResponseVariables() const {
  return responses;
}

void QXVarList::SetUnWeightedCount(double count) {
  unweightedCount = count;
}

double QXVarList::GetUnWeightedCount() const {
  return unweightedCount;
}

void QXVarList::SetWeightedCount(double count) {
  weightedCount = count;
}

double QXVarList::GetWeightedCount() const {
  return weightedCount;
}

void QXVarList::SetDroppedCount(double count) {
  droppedCount = count;
}

double QXVarList::GetDroppedCount() const {
  return droppedCount;
}

void QXVarList::SetBadWeightCount(double count) {
  badWeightCount = count;
}

double QXVarList::GetBadWeightCount() const {
  return badWeightCount;
}

void QXVarList::SetWeightedDroppedCount(double count) {
  weightedDroppedCount = count;
}

double QXVarList::GetWeightedDroppedCount() const {
  return weightedDroppedCount;
}

void QXVarList::SetListwiseDeletion(bool on) {
  listwiseDeletion = on;
}

bool QXVarList::GetListwiseDeletion() const {
  return listwiseDeletion;
}

void QXVarList::SetFieldFormatsElement(XMLElement* element) {
  fieldFormats = element;
}

const XMLElement* QXVarList::GetFieldFormatsElement() const {
  return fieldFormats;
}

XMLElement* QXVarList::GetFieldFormatsElement() {
  return fieldFormats;
}

bool QXVarList::Accepts(const std::string& name) const {
  return !name.empty() && FindVariable(name) < 0;
}

void QXVarList::TakeRole(int index, VariableRole role) {
  if (role == Var::RoleTarget) targetIndex = index;
  if (role == Var::RoleTargetResponse) AddResponseVariable(index);
}

int QXVarList::Append(IQXVariable* variable, bool continuous) {
  const int index = static_cast<int>(variables.size());
  variables.push_back(variable);
  if (namesIndexed) names.emplace(variable->GetVariableName(), index);
  ++(continuous ? nContVars : nCatVars);
  TakeRole(index, variable->GetVariableRole());
  return index;
}

int QXVarList::PlaceWeight(IQXVariable* weight) {
  if (InRange(weightIndex)) {
    delete variables[weightIndex];
    variables[weightIndex] = weight;
  } else {
    weightIndex = static_cast<int>(variables.size());
    variables.push_back(weight);
  }
  namesIndexed = false;
  return weightIndex;
}

// A categorical variable of these categories, each encoded in order.
template <typename Category>
int QXVarList::AddCategories(const std::string& name, const std::string& label,
                             const std::vector<Category>& categories,
                             const std::vector<double>* sums,
                             const std::vector<std::string>* valueLabels, VariableRole role) {
  if (!Accepts(name)) return -1;
  const MeasureLevel level = std::is_same<Category, double>::value ? Var::LevelNumericCategorical
                                                                   : Var::LevelStringCategorical;
  const int n = static_cast<int>(categories.size());
  QXCatVar* variable = sums != nullptr ? new QXCatVar(name, label, *sums, n, level, role, false)
                                       : new QXCatVar(name, label, n, level, role, false);
  IQXEncoder* encoder = variable->GetEncoder();
  for (const Category& category : categories)
    encoder->Encode(category);
  if (valueLabels != nullptr) encoder->SetValueLabels(*valueLabels);
  return Append(variable, false);
}

int QXVarList::AddContVar(const std::string& name, const std::string& label, VariableRole role) {
  if (!Accepts(name)) return -1;
  return Append(new QXContVar(name, label, role), true);
}

int QXVarList::AddContVar(const std::string& name, const std::string& label, double min, double max,
                          const std::vector<double>& cutPoints, bool binned, VariableRole role) {
  if (!Accepts(name)) return -1;
  return Append(new QXContVar(name, label, min, max, cutPoints, binned, role), true);
}

int QXVarList::AddContVar(const std::string& name, const std::string& label,
                          const std::vector<double>& cutPoints, bool binned, VariableRole role) {
  if (!Accepts(name)) return -1;
  return Append(new QXContVar(name, label, cutPoints, binned, role), true);
}

int QXVarList::AddContVar(const std::string& name, const std::string& label, double min, double max,
                          VariableRole role, bool binned, int nBins) {
  if (!Accepts(name)) return -1;
  return Append(new QXContVar(name, label, min, max, role, binned, nBins), true);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& categories, VariableRole role) {
  return AddCategories(name, label, categories, nullptr, nullptr, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& categories, VariableRole role) {
  return AddCategories(name, label, categories, nullptr, nullptr, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& categories,
                         const std::vector<std::string>& valueLabels, VariableRole role) {
  return AddCategories(name, label, categories, nullptr, &valueLabels, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& categories,
                         const std::vector<std::string>& valueLabels, VariableRole role) {
  return AddCategories(name, label, categories, nullptr, &valueLabels, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& categories,
                         const std::vector<double>& sumFreqWts, VariableRole role) {
  return AddCategories(name, label, categories, &sumFreqWts, nullptr, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& categories,
                         const std::vector<double>& sumFreqWts, VariableRole role) {
  return AddCategories(name, label, categories, &sumFreqWts, nullptr, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<std::string>& categories,
                         const std::vector<double>& sumFreqWts,
                         const std::vector<std::string>& valueLabels, VariableRole role) {
  return AddCategories(name, label, categories, &sumFreqWts, &valueLabels, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label,
                         const std::vector<double>& categories,
                         const std::vector<double>& sumFreqWts,
                         const std::vector<std::string>& valueLabels, VariableRole role) {
  return AddCategories(name, label, categories, &sumFreqWts, &valueLabels, role);
}

int QXVarList::AddCatVar(const std::string& name, const std::string& label, int nCategories,
                         MeasureLevel level, VariableRole role) {
  if (!Accepts(name)) return -1;
  return Append(new QXCatVar(name, label, nCategories, level, role, false), false);
}

int QXVarList::AddNewVar(const IQXVariable* variable) {
  if (variable == nullptr || FindVariable(variable->GetVariableName()) >= 0) return -1;
  switch (variable->GetMeasureLevel()) {
    case Var::LevelNumericCategorical:
    case Var::LevelStringCategorical: {
      const QXCatVar* source = dynamic_cast<const QXCatVar*>(variable);
      return source != nullptr ? Append(new QXCatVar(*source), false) : -1;
    }
    case Var::LevelContinuous: {
      const QXContVar* source = dynamic_cast<const QXContVar*>(variable);
      return source != nullptr ? Append(new QXContVar(*source), true) : -1;
    }
    case Var::LevelFrequencyWeight: {
      const QXWeightVar* source = dynamic_cast<const QXWeightVar*>(variable);
      return source != nullptr ? PlaceWeight(new QXWeightVar(*source)) : -1;
    }
    default:
      return -1;
  }
}

int QXVarList::SetWeightVar(const std::string& name, const std::string& label,
                            IQXVariable::WRoundingOption option) {
  return PlaceWeight(new QXWeightVar(name, label, option));
}

bool QXVarList::SetMissingValueReplacement(int index, const std::string& replacement) {
  IQXVariable* variable = InRange(index) ? variables[index] : nullptr;
  if (variable == nullptr) return false;
  variable->SetMissingValueReplacement(replacement);
  return true;
}

bool QXVarList::SetVariableRole(int index, VariableRole role) {
  IQXVariable* variable = InRange(index) ? variables[index] : nullptr;
  if (variable == nullptr) return false;
  if (role == Var::RoleTarget) {
    if (targetIndex == -1) targetIndex = index;
  } else if (role == Var::RoleTargetResponse) {
    ChangeVariableRole(true, index);
  } else if (variable->GetVariableRole() == Var::RoleTarget) {
    targetIndex = -1;
  }
  variable->SetVariableRole(role);
  return true;
}

bool QXVarList::ChangeVariableRole(bool isResponse, int index) {
  if (!InRange(index)) return false;
  const auto found = std::find(responses.begin(), responses.end(), index);
  if (isResponse && found == responses.end()) responses.push_back(index);
  if (!isResponse && found != responses.end()) responses.erase(found);
  if (responses.empty()) firstResponseIndex = -1;
  if (firstResponseIndex == -1 && !responses.empty()) firstResponseIndex = responses.front();
  return false;
}

bool QXVarList::AddResponseVariable(int index) {
  if (!InRange(index)) return false;
  if (firstResponseIndex == -1 && responses.empty()) firstResponseIndex = index;
  responses.push_back(index);
  return true;
}

bool QXVarList::RemoveResponseVariable(int index) {
  if (variables.empty() || index < 0 || static_cast<size_t>(index) > variables.size()) {
    return false;
  }
  if (responses.empty()) return true;
  responses.erase(std::remove(responses.begin(), responses.end(), index), responses.end());
  for (int& response : responses) {
    if (response > index) --response;
  }
  if (responses.empty()) {
    firstResponseIndex = -1;
  } else if (firstResponseIndex == index) {
    firstResponseIndex = responses.front();
  }
  return true;
}

bool QXVarList::RemoveVar(int index) {
  if (!InRange(index)) return false;
  IQXVariable* variable = variables[index];
  const bool present = variable != nullptr;
  const bool continuous = present && variable->GetMeasureLevel() == Var::LevelContinuous;
  const bool target = present && variable->GetVariableRole() == Var::RoleTarget;
  const bool weight = index == weightIndex;
  delete variable;
  variables.erase(variables.begin() + index);
  namesIndexed = false;
  if (continuous) {
    --nContVars;
  } else if (present && !weight && !target) {
    --nCatVars;
  }
  if (target) {
    targetIndex = -1;
  } else if (targetIndex > index) {
    --targetIndex;
  }
  RemoveResponseVariable(index);
  if (weight) {
    weightIndex = -1;
  } else if (weightIndex > index) {
    --weightIndex;
  }
  return true;
}

bool QXVarList::RemoveVar(std::string name) {
  const int index = FindVariable(name);
  return index >= 0 && RemoveVar(index);
}

bool QXVarList::ChangeTargetEncoder(IQXEncoder* encoder) {
  QXCatVar* target =
      InRange(targetIndex) ? dynamic_cast<QXCatVar*>(variables[targetIndex]) : nullptr;
  if (target == nullptr) return false;
  const bool usable = encoder != nullptr &&
                      (encoder->GetEncoderType() == IQXEncoder::EncoderCatNum ||
                       encoder->GetEncoderType() == IQXEncoder::EncoderString) &&
                      encoder->GetNumberOfCategories() >= 1;
  target->ChangeEncoder(encoder);
  return usable;
}

int QXVarList::UpdateNumbersOfCategories() {
  int sum = 0;
  for (IQXVariable* variable : variables) {
    if (variable != nullptr) sum += variable->UpdateNumberOfCategories();
  }
  return sum;
}

int QXVarList::WriteObjectXML(std::ostream& os, int nTabs) const {
  if (!os.good()) return 0;
  internal::ObjWriter out(os, "QXVarList", nTabs);
  out.Value(static_cast<int>(variables.size()));
  for (const IQXVariable* variable : variables) {
    // An entry left null by a failed read is written as level 0 alone,
    // which no reader accepts.
    out.Enum(variable != nullptr ? variable->GetMeasureLevel() : Var::LevelUnknown);
    if (variable != nullptr) out.Nested(variable->WriteObjectXML(os, nTabs + 1));
  }
  out.Value(nContVars);
  out.Value(nCatVars);
  out.Value(targetIndex);
  out.Value(firstResponseIndex);
  return out.End();
}

int QXVarList::ReadObjectXML(std::ifstream& is) {
  internal::ObjReader in(is, "QXVarList", "Failure reading QXVarList!\n");
  // The weight variable is kept for a weight entry; the others go.
  IQXVariable* keptWeight = nullptr;
  for (size_t i = 0; i < variables.size(); ++i) {
    if (static_cast<int>(i) == weightIndex) {
      keptWeight = variables[i];
    } else {
      delete variables[i];
    }
  }
  variables.clear();
  namesIndexed = false;
  bool weightRead = false;
  // A weight variable that found no place goes; the weight index points at a
  // weight entry read from the stream, or nowhere.
  const auto settleWeight = [&]() {
    delete keptWeight;
    if (!weightRead) weightIndex = -1;
  };
  try {
    const int n = in.Count();
    variables.assign(internal::CappedCount(is, n), nullptr);
    for (int i = 0; i < n; ++i) {
      if (static_cast<size_t>(i) == variables.size()) variables.push_back(nullptr);
      int level = 0;
      in.Value(level);
      IQXVariable* variable = nullptr;
      switch (level) {
        case Var::LevelContinuous:
          variable = new QXContVar(" ", " ", Var::RoleInput);
          break;
        case Var::LevelNumericCategorical:
        case Var::LevelStringCategorical:
          variable =
              new QXCatVar(" ", " ", 0, static_cast<MeasureLevel>(level), Var::RoleInput, false);
          break;
        case Var::LevelFrequencyWeight:
          variable = keptWeight != nullptr ? keptWeight : new QXWeightVar(" ", " ", Var::RoundAsIs);
          keptWeight = nullptr;
          break;
        default:
          in.Fail();
      }
      try {
        in.Nested(variable->ReadObjectXML(is));
      } catch (...) {
        delete variable;
        throw;
      }
      variables[i] = variable;
      if (level == Var::LevelFrequencyWeight) {
        weightIndex = i;
        weightRead = true;
      }
    }
    in.Value(nContVars);
    in.Value(nCatVars);
    in.Value(targetIndex);
    in.Value(firstResponseIndex);
    const int count = in.End();
    settleWeight();
    return count;
  } catch (...) {
    settleWeight();
    throw;
  }
}

void QXVarList::Display() const {
  using namespace QXDisplay_850;
  DisplayText(1, "Begin display of QXVarList object.");
  DisplayI("Total variables", static_cast<int>(variables.size()));
  DisplayI("Number of Continuous Variables", nContVars);
  DisplayI("Number of Categorical Variables", nCatVars);
  for (size_t k = 0; k < variables.size(); ++k) {
    char number[16];
    std::snprintf(number, sizeof number, " %d", static_cast<int>(k));
    DisplayText(2, std::string("Variable") + number);
    if (variables[k] != nullptr) variables[k]->Display();
  }
  DisplayText(1, "End of display for QXVarList object.");
}

}  // namespace QXXML_850
