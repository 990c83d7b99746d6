// Speed of writing a PMML data dictionary and data model: QXPMMLExporter
// builds the trees of a list of categorical variables (20 labelled
// categories each) and WriteTree writes them, against libxml2's
// xmlTextWriter writing the same elements and attributes, read from the same
// list, in the same run. Both write to a sink that only counts the bytes.
#include <benchmark/benchmark.h>
#include <libxml/xmlwriter.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "qx/dictionary/qxcatvar.h"
#include "qx/dictionary/qxvarlist.h"
#include "qx/documents/qxpmmlexporter.h"
#include "qx/foundation/internal/benchmarkratio.h"
#include "qx/markup/internal/countingsink.h"
#include "qx/markup/xmlelement.h"

namespace {

using namespace QXXML_850;
using internal::CountBytes;
using internal::CountingBuffer;
using QXCommon_850::QXPMMLExporter;
using V = IQXVariable;

const int kCategories = 20;

// `n` categorical variables, string and numeric in turn, each with 20
// categories and their labels, a label of its own and the input role.
const QXVarList& List(int n) {
  static std::unique_ptr<QXVarList> list;
  if (list == nullptr || static_cast<int>(list->Size()) != n) {
    list.reset(new QXVarList);
    for (int i = 0; i < n; ++i) {
      std::vector<std::string> labels, texts;
      std::vector<double> numbers;
      for (int k = 0; k < kCategories; ++k) {
        labels.push_back("Level " + std::to_string(k) + " of field " + std::to_string(i));
        texts.push_back("cat_" + std::to_string(k * 37 % 101));
        numbers.push_back(k * 2.5);
      }
      const std::string name = "field_" + std::to_string(i);
      const int index =
          i % 2 == 0
              ? list->AddCatVar(name, "Field " + std::to_string(i), texts, labels, V::RoleInput)
              : list->AddCatVar(name, "Field " + std::to_string(i), numbers, labels, V::RoleInput);
      list->GetVarAt(index)->SetVariableStorage(i % 2 == 0 ? V::StorageString : V::StorageReal);
    }
  }
  return *list;
}

void BM_ExportPMML(benchmark::State& state) {
  const QXVarList& list = List(static_cast<int>(state.range(0)));
  std::size_t bytes = 0;
  for (auto _ : state) {
    QXPMMLExporter exporter(nullptr);
    std::unique_ptr<XMLElement> root(exporter.ExportPMMLElement());
    XMLElement* part = nullptr;
    exporter.ExportDataDictionary(list, {}, part);
    root->AddElement(part);
    XMLElement* extension = nullptr;
    exporter.ExportExtension("dataModel", "", extension);
    exporter.ExportDataModel(list, {}, part);
    extension->AddElement(part);
    root->AddElement(extension);
    CountingBuffer buffer;
    std::ostream os(&buffer);
    WriteTree(os, nullptr, root.get(), true);
    bytes = buffer.count;
    benchmark::DoNotOptimize(bytes);
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
  state.counters["doc_MB"] = static_cast<double>(bytes) / 1e6;
}

const xmlChar* X(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

void Attribute(xmlTextWriterPtr w, const char* name, const std::string& value) {
  xmlTextWriterWriteAttribute(w, reinterpret_cast<const xmlChar*>(name), X(value));
}

void Start(xmlTextWriterPtr w, const char* name) {
  xmlTextWriterStartElement(w, reinterpret_cast<const xmlChar*>(name));
}

// The same document through xmlTextWriter: every value read from the list as
// the exporter reads it, line breaks between elements and no indentation.
void BM_LibxmlTextWriter(benchmark::State& state) {
  const QXVarList& list = List(static_cast<int>(state.range(0)));
  const int n = static_cast<int>(list.Size());
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::size_t count = 0;
    xmlOutputBufferPtr out = xmlOutputBufferCreateIO(CountBytes, nullptr, &count, nullptr);
    xmlTextWriterPtr w = xmlNewTextWriter(out);
    xmlTextWriterSetIndent(w, 1);
    xmlTextWriterSetIndentString(w, reinterpret_cast<const xmlChar*>(""));
    xmlTextWriterStartDocument(w, "1.0", "UTF-8", nullptr);
    Start(w, "PMML");
    Attribute(w, "version", "4.3");
    Attribute(w, "xmlns", "http://www.dmg.org/PMML-4_3");
    Attribute(w, "xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
    Attribute(w, "xsi:schemaLocation", "http://www.dmg.org/PMML-4_3 pmml-4-3.xsd");
    Start(w, "DataDictionary");
    Attribute(w, "numberOfFields", std::to_string(n));
    for (int i = 0; i < n; ++i) {
      const IQXVariable* v = list.GetVarAt(i);
      const IQXEncoder* e = v->GetEncoder();
      const auto* cat = static_cast<const QXCatVar*>(v);
      Start(w, "DataField");
      Attribute(w, "name", v->GetVariableName());
      Attribute(w, "displayName", v->GetVariableLabel());
      Attribute(w, "optype", cat->GetOrdinalFlag() ? "ordinal" : "categorical");
      Attribute(w, "dataType", v->GetVariableStorage() == V::StorageString ? "string" : "double");
      const std::vector<std::string>* labels = e->GetValueLabels();
      for (int k = 0; k < e->GetNumberOfCategories(); ++k) {
        Start(w, "Value");
        Attribute(w, "value", e->Decode(k));
        Attribute(w, "displayValue", (*labels)[static_cast<size_t>(k)]);
        Attribute(w, "property", "valid");
        xmlTextWriterEndElement(w);
      }
      xmlTextWriterEndElement(w);
    }
    xmlTextWriterEndElement(w);
    Start(w, "Extension");
    Attribute(w, "name", "dataModel");
    Attribute(w, "extender", "qxcommon");
    Start(w, "DataModel");
    Start(w, "Fields");
    Attribute(w, "count", std::to_string(n));
    for (int i = 0; i < n; ++i) {
      const IQXVariable* v = list.GetVarAt(i);
      Start(w, "Field");
      Attribute(w, "name", v->GetVariableName());
      Attribute(w, "displayLabel", v->GetVariableLabel());
      Attribute(w, "measure", "nominal");
      Attribute(w, "storage", v->GetVariableStorage() == V::StorageString ? "string" : "real");
      Attribute(w, "role", "input");
      xmlTextWriterEndElement(w);
    }
    xmlTextWriterEndDocument(w);
    xmlFreeTextWriter(w);
    bytes = count;
    benchmark::DoNotOptimize(bytes);
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes) * state.iterations());
  state.counters["doc_MB"] = static_cast<double>(bytes) / 1e6;
}

BENCHMARK(BM_ExportPMML)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LibxmlTextWriter)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
QX_BENCHMARK_RATIO("BM_ExportPMML", "BM_LibxmlTextWriter");

}  // namespace
