#ifndef QX_DICTIONARY_QXVARLIST_H
#define QX_DICTIONARY_QXVARLIST_H

#include <cstddef>
#include <fstream>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "qx/dictionary/iqxencoder.h"
#include "qx/dictionary/iqxvariable.h"
#include "qx/foundation/qxexport.h"

namespace QXXML_850 {

class XMLElement;

// The data dictionary of one analysis: the ordered list of its variables,
// which it owns, with the indexes of the target, the first response variable
// and the frequency weight, and the case counts of the pass over the data. A
// component adds its variables, refers to them by index (an int position; -1
// means none) from then on, encodes its cases through their encoders, and
// saves the list with WriteObjectXML or builds it with ReadObjectXML.
//
// Out-of-range indexes never throw: each operation gives its refusal value
// (null, -1, false or RoleUndefined). Entries left null by a failed read are
// skipped by every operation.
class QXCOMMON_API QXVarList {
 public:
  using VariableRole = IQXVariable::VariableRole;
  using MeasureLevel = IQXVariable::MeasureLevel;

  QXVarList();
  // Deep copies. Assignment keeps this list's listwise-deletion flag.
  QXVarList(const QXVarList& other);
  QXVarList& operator=(const QXVarList& other);
  virtual ~QXVarList();

  // The number of entries, the weight variable included.
  size_t Size() const;
  // The weight variable is in neither number.
  int GetNumContVar() const;
  int GetNumCatVar() const;
  const IQXVariable* GetVarAt(int index) const;
  IQXVariable* GetVarAt(int index);
  const IQXEncoder* GetEncoderAt(int index) const;
  IQXEncoder* GetEncoderAt(int index);
  // The index of the first variable of exactly this name, or -1. Lookups go
  // through an index of names, rebuilt after the list's own changes and after
  // a variable was handed out for change by the non-const GetVarAt or
  // GetVariable.
  int FindVariable(const std::string& name) const;
  const IQXVariable* GetVariable(const std::string& name) const;
  IQXVariable* GetVariable(const std::string& name);
  VariableRole GetVariableRole(int index) const;
  // How many variables have the role RoleInput, RolePossibleInput.
  int GetNumInputVars() const;
  int GetNumPossibleInputVars() const;
  // The number of categories of each RoleInput variable, in list order.
  std::vector<int> GetNInputCats() const;
  // The names of the RoleInput and of the RoleTargetResponse variables, in
  // list order.
  void GetVarNames(std::vector<std::string>& inputs, std::vector<std::string>& responses) const;
  int GetTargetIndex() const;
  int GetFirstResponseIndex() const;
  int GetWeightIndex() const;
  // The response variables' indexes, in the order added.
  const std::vector<int>& GetResponseVariables() const;

  // Counts of the pass over the data, kept for the component.
  void SetUnWeightedCount(double count);
  double GetUnWeightedCount() const;
  void SetWeightedCount(double count);
  double GetWeightedCount() const;
  void SetDroppedCount(double count);
  double GetDroppedCount() const;
  void SetBadWeightCount(double count);
  double GetBadWeightCount() const;
  void SetWeightedDroppedCount(double count);
  double GetWeightedDroppedCount() const;
  void SetListwiseDeletion(bool on);
  bool GetListwiseDeletion() const;
  // The list takes the element over; one set before is not deleted.
  void SetFieldFormatsElement(XMLElement* element);
  const XMLElement* GetFieldFormatsElement() const;
  XMLElement* GetFieldFormatsElement();

  // Each Add gives the new variable's index, or -1 for an empty name or one
  // already in the list. A RoleTarget variable becomes the target (an earlier
  // one keeps its role), a RoleTargetResponse one a response variable.
  int AddContVar(const std::string& name, const std::string& label, VariableRole role);
  int AddContVar(const std::string& name, const std::string& label, double min, double max,
                 const std::vector<double>& cutPoints, bool binned, VariableRole role);
  int AddContVar(const std::string& name, const std::string& label,
                 const std::vector<double>& cutPoints, bool binned, VariableRole role);
  int AddContVar(const std::string& name, const std::string& label, double min, double max,
                 VariableRole role, bool binned, int nBins);
  // Categorical variables: texts make a LevelStringCategorical variable,
  // numbers a LevelNumericCategorical one. Every category is encoded in
  // order, so code k is element k unless there are repeats; the number of
  // categories is the vector's length, the ordinal flag false.
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& categories, VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& categories, VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& categories,
                const std::vector<std::string>& valueLabels, VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& categories, const std::vector<std::string>& valueLabels,
                VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& categories, const std::vector<double>& sumFreqWts,
                VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& categories, const std::vector<double>& sumFreqWts,
                VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<std::string>& categories, const std::vector<double>& sumFreqWts,
                const std::vector<std::string>& valueLabels, VariableRole role);
  int AddCatVar(const std::string& name, const std::string& label,
                const std::vector<double>& categories, const std::vector<double>& sumFreqWts,
                const std::vector<std::string>& valueLabels, VariableRole role);
  // nCategories announced, nothing encoded.
  int AddCatVar(const std::string& name, const std::string& label, int nCategories,
                MeasureLevel level, VariableRole role);
  // Stores a copy of a QXContVar, QXCatVar or QXWeightVar (a weight replaces
  // the present one and gives the weight index). -1 for null, a name already
  // present, or another class; the empty name is allowed here.
  int AddNewVar(const IQXVariable* variable);
  // A new weight variable, in the place of the present one if there is one.
  int SetWeightVar(const std::string& name, const std::string& label,
                   IQXVariable::WRoundingOption option);
  bool SetMissingValueReplacement(int index, const std::string& replacement);
  // RoleTarget makes the variable the target only if there is none yet (it
  // takes the role either way); a target given another role leaves the list
  // without target; RoleTargetResponse adds a response variable.
  bool SetVariableRole(int index, VariableRole role);
  // Adds the index to the responses (isResponse) unless there, or removes
  // it, then keeps the first response index in step. Always answers false.
  bool ChangeVariableRole(bool isResponse, int index);
  // Appends, without a test for repeats.
  bool AddResponseVariable(int index);
  // Removes the index from the responses and lowers those above it; index
  // may equal the size. A first response index above it is not lowered.
  bool RemoveResponseVariable(int index);
  // Deletes the variable and keeps the target, response and weight indexes
  // pointing at the same variables. A categorical target leaves the number
  // of categorical variables as it was.
  bool RemoveVar(int index);
  bool RemoveVar(std::string name);
  // Hands the encoder to the categorical target variable, which deletes its
  // own. True if the encoder is categorical with at least one category. The
  // encoder is handed over even when the answer is false; only a list whose
  // target isn't a categorical variable leaves it with the caller.
  bool ChangeTargetEncoder(IQXEncoder* encoder);
  // The sum of every variable's UpdateNumberOfCategories.
  int UpdateNumbersOfCategories();

  // Entries, each as its measurement level and its object, then the numbers
  // of continuous and categorical variables, the target and the first
  // response index. The weight index, the flags, the counts, the responses
  // and the field formats are not written. Reading deletes the variables
  // first, reusing the weight variable for a weight entry; a failed read
  // leaves the entries not read null and the counts as they were.
  int WriteObjectXML(std::ostream& os, int nTabs) const;
  int ReadObjectXML(std::ifstream& is);
  void Display() const;

 private:
  int Append(IQXVariable* variable, bool continuous);
  template <typename Category>
  int AddCategories(const std::string& name, const std::string& label,
                    const std::vector<Category>& categories, const std::vector<double>* sums,
                    const std::vector<std::string>* valueLabels, VariableRole role);
  int PlaceWeight(IQXVariable* weight);
  bool Accepts(const std::string& name) const;
  void TakeRole(int index, VariableRole role);
  void CopyFrom(const QXVarList& other);
  void Clear();
  void IndexNames() const;
  bool InRange(int index) const;

  std::vector<IQXVariable*> variables;
  int nContVars;
  int nCatVars;
  int targetIndex;
  int firstResponseIndex;
  int weightIndex;
  bool listwiseDeletion;
  double unweightedCount;
  double weightedCount;
  double droppedCount;
  double badWeightCount;
  double weightedDroppedCount;
  std::vector<int> responses;
  XMLElement* fieldFormats;
  // Name to first index, valid while namesIndexed.
  mutable std::unordered_map<std::string, int> names;
  mutable bool namesIndexed;
};

}  // namespace QXXML_850

#endif  // QX_DICTIONARY_QXVARLIST_H
