// Writes the seed corpus of the persisted-object fuzzers: valid files in the
// layouts of the library's persisted classes, with the header and without,
// and, given a second folder, QXURandom's own binary and XML files. Run by
// hand (fuzz preset: build/fuzz/fuzz/make_seed_corpus fuzz/corpus/savexml_reader_fuzzer
// fuzz/corpus/qxurandom_fuzzer); the files are checked in under fuzz/corpus and
// never regenerated in CI.
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "qx/markup/savexml.h"
#include "qx/random/qxurandom.h"

namespace {

using QXXML_850::XMLObj;

void Interval(std::ostream& os, const XMLObj& obj, bool has) {
  obj.WriteSubElement(os, has);
  if (has) {
    obj.WriteSubElement(os, -1.5);
    obj.WriteSubElement(os, 99.25);
  }
}

void ContEncoder(std::ostream& os, int depth, const char* name, bool interval) {
  const XMLObj obj(name, depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, 10);
  Interval(os, obj, interval);
  obj.WriteSubElement(os, 2);
  obj.WriteSubElement(os, -99.0);
  obj.WriteSubElement(os, QXXML_850::MV::gMissingValue);
  obj.WriteSubElement(os, "not asked");
  obj.WriteSubElement(os, "");
  obj.EndObj(os);
}

void CatNumEncoder(std::ostream& os, int depth) {
  const XMLObj obj("QXCatNumEncoder", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, 3);
  for (double v : {1.0, 2.0, 3.5})
    obj.WriteSubElement(os, v);
  obj.WriteSubElement(os, 2);
  obj.WriteSubElement(os, "low & \"quoted\"");
  obj.WriteSubElement(os, "  two blanks  ");
  Interval(os, obj, true);
  obj.WriteSubElement(os, 1);
  obj.WriteSubElement(os, 9.0);
  obj.WriteSubElement(os, "refused");
  obj.EndObj(os);
}

void StringEncoder(std::ostream& os, int depth) {
  const XMLObj obj("QXStringEncoder", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, 2);
  obj.WriteSubElement(os, "red");
  obj.WriteSubElement(os, "green\tblue");
  obj.WriteSubElement(os, 1);
  obj.WriteSubElement(os, "<colour>");
  obj.WriteSubElement(os, 1);
  obj.WriteSubElement(os, "n/a");
  obj.WriteSubElement(os, "not available");
  obj.EndObj(os);
}

void ContVar(std::ostream& os, int depth, bool withEncoder) {
  const XMLObj obj("QXContVar", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, "income");
  obj.WriteSubElement(os, "Yearly income\nin euro");
  obj.WriteSubElement(os, 4);
  obj.WriteSubElement(os, 5);
  for (double v : {0.0, 250000.0, 41234.56789012345, QXXML_850::MV::gMissingValue}) {
    obj.WriteSubElement(os, v);
  }
  obj.WriteSubElement(os, 2);
  obj.WriteSubElement(os, true);
  obj.WriteSubElement(os, "0");
  obj.WriteSubElement(os, 1234.0);
  obj.WriteSubElement(os, 1234.0);
  obj.WriteSubElement(os, withEncoder ? 1 : 0);
  if (withEncoder) ContEncoder(os, depth + 1, "QXContEncoder", true);
  obj.EndObj(os);
}

void CatVar(std::ostream& os, int depth, bool strings) {
  const XMLObj obj("QXCatVar", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, strings ? "colour" : "grade");
  obj.WriteSubElement(os, "");
  obj.WriteSubElement(os, 1);
  obj.WriteSubElement(os, strings ? 3 : 1);
  obj.WriteSubElement(os, strings ? 2 : 3);
  obj.WriteSubElement(os, strings ? 3 : 2);
  obj.WriteSubElement(os, !strings);
  obj.WriteSubElement(os, false);
  obj.WriteSubElement(os, -1);
  obj.WriteSubElement(os, false);
  obj.WriteSubElement(os, strings ? 3 : 2);
  if (strings) {
    StringEncoder(os, depth + 1);
  } else {
    CatNumEncoder(os, depth + 1);
  }
  obj.EndObj(os);
}

void WeightVar(std::ostream& os, int depth) {
  const XMLObj obj("QXWeightVar", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, "weight");
  obj.WriteSubElement(os, "case weight");
  obj.WriteSubElement(os, 2);
  ContEncoder(os, depth + 1, "QXRoundEncoder", false);
  obj.EndObj(os);
}

void VarList(std::ostream& os, int depth) {
  const XMLObj obj("QXVarList", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, 4);
  obj.WriteSubElement(os, 1);
  ContVar(os, depth + 1, true);
  obj.WriteSubElement(os, 2);
  CatVar(os, depth + 1, false);
  obj.WriteSubElement(os, 3);
  CatVar(os, depth + 1, true);
  obj.WriteSubElement(os, 4);
  WeightVar(os, depth + 1);
  for (int v : {1, 2, 1, -1})
    obj.WriteSubElement(os, v);
  obj.EndObj(os);
}

void URandom(std::ostream& os, int depth) {
  const XMLObj obj("QXURandom", depth);
  obj.StartObj(os);
  obj.WriteSubElement(os, 1234.0);
  obj.WriteSubElement(os, 1);
  obj.WriteSubElement(os, 0);
  obj.EndObj(os);
}

}  // namespace

// One object twice: as a saving application writes it (header, root, the
// object one deep), and alone, as a class's ReadObjectXML meets it in a file.
template <class Write>
void WriteBothForms(const std::string& folder, const std::string& name, Write write) {
  std::ofstream whole(folder + "/" + name + ".xml", std::ios::binary);
  QXXML_850::StartDocument(whole);
  QXXML_850::StartRoot(whole, "(c) qxcommon seed corpus");
  write(whole, 1);
  QXXML_850::EndRoot(whole);
  std::ofstream bare(folder + "/" + name + "_object.xml", std::ios::binary);
  write(bare, 0);
}

// QXURandom in each of its modes, written by its own writers.
void URandomFiles(const std::string& folder) {
  const struct {
    const char* name;
    unsigned long seed;
    bool portable, twister;
  } modes[] = {{"twister", 34567, true, true},
               {"congruential", 123456789, true, false},
               {"clibrary", 5, false, false},
               {"largeseed", 18446744073709551615ul, true, false}};
  for (const auto& m : modes) {
    const QXMath_850::QXURandom r(m.seed, m.portable, m.twister, nullptr);
    std::fstream binary(folder + "/" + m.name + ".bin",
                        std::ios::out | std::ios::binary | std::ios::trunc);
    r.WriteObject(binary);
    WriteBothForms(folder, m.name,
                   [&](std::ostream& os, int depth) { r.WriteObjectXML(os, depth); });
  }
}

int main(int argc, char** argv) {
  if (argc != 2 && argc != 3) {
    std::cerr << "usage: make_seed_corpus <folder> [<QXURandom folder>]\n";
    return 2;
  }
  if (argc == 3) URandomFiles(argv[2]);
  const std::string folder = argv[1];
  const std::vector<std::pair<std::string, void (*)(std::ostream&, int)>> seeds = {
      {"urandom", URandom},
      {"varlist", VarList},
      {"contvar", [](std::ostream& os, int d) { ContVar(os, d, true); }},
      {"contvar_noencoder", [](std::ostream& os, int d) { ContVar(os, d, false); }},
      {"catvar_numeric", [](std::ostream& os, int d) { CatVar(os, d, false); }},
      {"catvar_string", [](std::ostream& os, int d) { CatVar(os, d, true); }},
      {"weightvar", WeightVar},
      {"contencoder", [](std::ostream& os, int d) { ContEncoder(os, d, "QXContEncoder", true); }},
      {"catnumencoder", CatNumEncoder},
      {"stringencoder", StringEncoder},
  };
  for (const auto& seed : seeds)
    WriteBothForms(folder, seed.first, seed.second);
  return 0;
}
