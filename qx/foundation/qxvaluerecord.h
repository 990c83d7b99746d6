#ifndef QX_FOUNDATION_QXVALUERECORD_H
#define QX_FOUNDATION_QXVALUERECORD_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "qx/foundation/qxexport.h"
#include "qx/foundation/qxvalue.h"

namespace QXCommon_850 {

// One row of data as named values in a fixed order: a component fills it by
// name and reads it by name or by position. The names always map onto the
// positions 0 to Size()-1, each once, whatever operation ran last. Lookups
// report by their result (-1, false, a null value); operator[](int), SetValue
// and SetMissingValue don't check the position.
class QXCOMMON_API ValueRecord {
 public:
  // An empty record with room reserved for `capacity` values.
  explicit ValueRecord(int capacity = 0);
  virtual ~ValueRecord();

  // Equal sizes and, walking both in name order, pairwise values that are
  // not !=. Names are not compared, and a null value differs from every
  // other value, so a record holding one differs from its own copy.
  virtual bool operator==(const ValueRecord& other) const;

  // Replaces the value of a known name, or appends a new one at the end.
  // Returns the position.
  virtual int Add(const std::string& name, const Value& value);
  // Add for each of the other's names in name order; true.
  virtual bool AddAll(const ValueRecord& other);
  // Assigns to a known name; false for an unknown one, and with `checkType`
  // false if the present value is not null and of another kind than `value`.
  virtual bool Set(const std::string& name, const Value& value, bool checkType);
  // Removes the name and its value; the positions above close up.
  virtual void Remove(const std::string& name);
  virtual void Clear();
  // Value::ClearValue on every value; names and positions stay.
  virtual void ClearValues();
  virtual void SetMissingValue(int position);  // makes it null; unchecked

  // Copies; a null value for an unknown name or a position out of range.
  virtual Value Get(const std::string& name) const;
  virtual Value Get(int position) const;
  virtual int IndexOf(const std::string& name) const;  // -1 if unknown
  virtual bool Contains(const std::string& name);
  virtual int Size() const;
  // In name order, or with `inPositionOrder` the name of each position.
  virtual std::vector<std::string> Names(bool inPositionOrder) const;
  // The name at a position, "" if none; a linear search.
  virtual std::string GetName(int position) const;

  // Assign by Value's operator=, so the value takes the kind of the
  // argument. Unchecked position; true.
  virtual bool SetValue(int position, bool value);
  virtual bool SetValue(int position, int value);
  virtual bool SetValue(int position, long long value);
  virtual bool SetValue(int position, double value);
  virtual bool SetValue(int position, const char* value);
  virtual bool SetValue(int position, const std::string& value);

  // A slot for derived records that sit on a row of their own; null here.
  virtual void* GetRecord() const;

  const Value& operator[](int position) const;  // unchecked
  Value& operator[](int position);              // unchecked
  // The value of `name`, added as null through Add if unknown.
  Value& operator[](const std::string& name);

  // "[name:value,...]" in name order, like a map-kind Value.
  std::ostream& Display(std::ostream& os) const;

 private:
  std::vector<Value> values;
  std::map<std::string, int> names;
};

// ValueRecord::Display.
QXCOMMON_API std::ostream& operator<<(std::ostream& os, const ValueRecord& record);

}  // namespace QXCommon_850

#endif  // QX_FOUNDATION_QXVALUERECORD_H
