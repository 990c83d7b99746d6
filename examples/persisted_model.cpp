// What a component does with the markup subsystem: it saves a small model to
// the persisted-object file and reads it back the way the library's own
// persisted classes do (WriteObjectXML / ReadObjectXML), then reports its
// result as an XML document.
//
// The "model" is a least-squares line through a few points.

#include <qx/qxcommon.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

using namespace QXXML_850;

namespace {

class LineModel {
 public:
  std::string name = "line";
  double intercept = QXCommon_850::QXMV::Missing();
  double slope = QXCommon_850::QXMV::Missing();
  long cases = 0;
  std::vector<std::string> notes;

  void Fit(const std::vector<double>& x, const std::vector<double>& y) {
    double sx = 0, sy = 0, sxx = 0, sxy = 0;
    cases = static_cast<long>(x.size());
    for (size_t i = 0; i < x.size(); ++i) {
      sx += x[i];
      sy += y[i];
      sxx += x[i] * x[i];
      sxy += x[i] * y[i];
    }
    const double n = static_cast<double>(cases);
    const double denominator = n * sxx - sx * sx;
    if (denominator != 0.0) {
      slope = (n * sxy - sx * sy) / denominator;
      intercept = (sy - slope * sx) / n;
    }
  }

  // The protocol of a persisted class: fields in a fixed order, nested one
  // tab deeper than the object's own line; 0 when nothing was written.
  int WriteObjectXML(std::ostream& os, int nTabs) const {
    if (!os.good()) return 0;
    XMLObj obj("LineModel", nTabs);
    obj.StartObj(os);
    obj.WriteSubElement(os, name);
    obj.WriteSubElement(os, intercept);
    obj.WriteSubElement(os, slope);
    obj.WriteSubElement(os, cases);
    obj.WriteSubElement(os, static_cast<int>(notes.size()));
    for (const std::string& note : notes)
      obj.WriteSubElement(os, note);
    obj.EndObj(os);
    return 7 + static_cast<int>(notes.size());
  }

  int ReadObjectXML(std::ifstream& is) {
    int count = 0;
    bool ok = is.good() && ParseStartObj(is, "LineModel") && ParseValue(is, name) &&
              ParseValue(is, intercept) && ParseValue(is, slope) && ParseValue(is, cases) &&
              ParseValue(is, count) && count >= 0;
    notes.assign(ok ? static_cast<size_t>(count) : 0, std::string());
    for (std::string& note : notes)
      ok = ok && ParseValue(is, note);
    if (!(ok && ParseEndObj(is))) {
      std::cerr << "Failure reading LineModel!\n";
      throw new IOException();
    }
    return 7 + count;
  }
};

}  // namespace

int main() {
  LineModel model;
  model.Fit({1, 2, 3, 4, 5}, {2.1, 3.9, 6.2, 7.8, 10.1});
  model.notes = {"fitted by least squares", "x & y in \"raw\" units"};

  const std::string path = "persisted_model_example.xml";
  {
    std::ofstream out(path, std::ios::binary);
    StartDocument(out);
    StartRoot(out, "(c) example component");
    model.WriteObjectXML(out, 1);
    EndRoot(out);
  }

  LineModel copy;
  try {
    std::ifstream in(path, std::ios::binary);
    if (!ParseStartXML(in)) throw new IOException();
    copy.ReadObjectXML(in);
  } catch (IOException* e) {
    delete e;
    std::cerr << "could not read the model back\n";
    return 1;
  }
  std::remove(path.c_str());

  // Numbers keep 15 significant digits; strings come back as they were
  // escaped, so the second note reads "x &amp; y in &quot;raw&quot; units".
  std::cout << "slope " << model.slope << " read back as " << copy.slope << "\n";
  std::cout << "note read back as: " << copy.notes[1] << "\n";

  std::unique_ptr<XMLElement> root(XMLElement::Create("Result"));
  XMLElement* estimate = XMLElement::Create("Estimate");
  estimate->AddAttribute("name", "slope");
  estimate->AddAttribute("value", copy.slope);
  root->AddElement(estimate);
  XMLElement* note = XMLElement::Create("Note");
  note->AddElement(XMLString::Create(model.notes[1]));
  root->AddElement(note);
  WriteTree(std::cout, nullptr, root.get(), true);
  std::cout << "\n";
  return copy.cases == model.cases ? 0 : 2;
}
