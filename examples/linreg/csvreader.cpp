#include "csvreader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <set>

namespace linreg {

namespace {

constexpr std::size_t kChunk = 1 << 16;

std::string_view Trim(std::string_view s) {
  const std::size_t first = s.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return {};
  return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace

CsvReader::CsvReader(std::istream& input, std::string shownName)
    : in(input), name(std::move(shownName)), buffer(kChunk), origin(input.tellg()) {}

InputError CsvReader::Error(Code code, const std::string& what) const {
  return InputError{code, name + ":" + std::to_string(Line()) + ": error: " + what};
}

long CsvReader::Line() const {
  if (shareEnd < 0) return line;
  if (shareLines < 0) shareLines = LinesBefore(dataStart);
  return shareLines + line;
}

long CsvReader::LinesBefore(std::streamoff offset) const {
  in.clear();
  const std::streampos kept = in.tellg();
  in.seekg(origin);
  std::vector<char> chunk(kChunk);
  long count = 0;
  for (std::streamoff left = offset; left > 0 && in;) {
    in.read(chunk.data(), static_cast<std::streamsize>(std::min<std::streamoff>(left, kChunk)));
    const std::streamsize got = in.gcount();
    if (got <= 0) break;
    for (const char* p = chunk.data();
         (p = static_cast<const char*>(std::memchr(p, '\n', chunk.data() + got - p))) != nullptr;
         ++p)
      ++count;
    left -= got;
  }
  in.clear();
  in.seekg(kept);
  return count;
}

void CsvReader::SeekTo(std::streamoff offset) {
  in.clear();
  if (origin == std::streampos(-1) || !in.seekg(origin + offset)) {
    throw InputError{kCannotOpen, name + ": error: the input can't be read a second time"};
  }
  begin = end = 0;
  atEof = false;
  consumed = offset;
}

void CsvReader::KeepShare(int index, int count) {
  in.clear();
  if (origin == std::streampos(-1) || !in.seekg(0, std::ios::end)) {
    throw InputError{kCannotOpen, name + ": error: the input can't be split into shares"};
  }
  const std::streamoff total = in.tellg() - origin;
  const std::streamoff span = std::max<std::streamoff>(total - dataStart, 0);
  const std::streamoff from = dataStart + span * index / count;
  shareEnd = index + 1 == count ? total : dataStart + span * (index + 1) / count;
  if (from == dataStart) {
    SeekTo(from);
  } else {
    // The line that runs over the start belongs to the share before: skip
    // to just after the first line end at or after the byte before it.
    SeekTo(from - 1);
    while (true) {
      const void* nl = std::memchr(buffer.data() + begin, '\n', end - begin);
      if (nl != nullptr) {
        begin = static_cast<const char*>(nl) - buffer.data() + 1;
        break;
      }
      begin = end;
      if (atEof) break;
      Fill();
    }
  }
  dataStart = consumed - static_cast<std::streamoff>(end - begin);
  dataLine = 0;
  line = 0;
}

void CsvReader::Fill() {
  if (begin > 0) {
    std::memmove(buffer.data(), buffer.data() + begin, end - begin);
    end -= begin;
    begin = 0;
  }
  if (buffer.size() < end + kChunk) buffer.resize(end + kChunk);
  in.read(buffer.data() + end, static_cast<std::streamsize>(buffer.size() - end));
  const std::streamsize got = in.gcount();
  end += static_cast<std::size_t>(got);
  consumed += got;
  if (got == 0) atEof = true;
}

bool CsvReader::NextLine(std::string_view& text) {
  if (shareEnd >= 0 && consumed - static_cast<std::streamoff>(end - begin) >= shareEnd) {
    return false;
  }
  std::size_t scanned = 0;  // bytes after `begin` known to hold no line end
  while (true) {
    const void* nl = std::memchr(buffer.data() + begin + scanned, '\n', end - begin - scanned);
    if (nl != nullptr) {
      const std::size_t at = static_cast<const char*>(nl) - buffer.data();
      text = std::string_view(buffer.data() + begin, at - begin);
      begin = at + 1;
      break;
    }
    scanned = end - begin;
    if (scanned > kMaxLineBytes) {
      ++line;
      throw Error(kBadTable, "a line longer than " + std::to_string(kMaxLineBytes) + " bytes");
    }
    if (atEof) {
      if (scanned == 0) return false;
      text = std::string_view(buffer.data() + begin, scanned);
      begin = end;
      break;
    }
    Fill();
  }
  ++line;
  if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
  return true;
}

void CsvReader::Split(std::string_view text, std::vector<std::string_view>& fields) {
  fields.clear();
  std::size_t used = 0;  // entries of `unescaped` taken by this line
  std::size_t i = 0;
  while (true) {
    const std::size_t start = text.find_first_not_of(" \t", i);
    if (start != std::string_view::npos && text[start] == '"') {
      // A quoted field: up to the closing quote, "" standing for one quote.
      std::size_t j = start + 1;
      bool escaped = false;
      while (true) {
        if (j >= text.size()) throw Error(kBadTable, "a quoted field has no closing quote");
        if (text[j] == '"') {
          if (j + 1 < text.size() && text[j + 1] == '"') {
            escaped = true;
            j += 2;
            continue;
          }
          break;
        }
        ++j;
      }
      std::string_view field = text.substr(start + 1, j - start - 1);
      if (escaped) {
        if (unescaped.size() <= used) unescaped.emplace_back();
        std::string& out = unescaped[used++];
        out.clear();
        for (std::size_t k = 0; k < field.size(); ++k) {
          out += field[k];
          if (field[k] == '"') ++k;
        }
        field = out;
      }
      const std::size_t comma = text.find(',', j + 1);
      if (!Trim(text.substr(j + 1, comma - (j + 1))).empty()) {
        throw Error(kBadTable, "text after a quoted field");
      }
      fields.push_back(field);
      i = comma;
    } else {
      const std::size_t comma = text.find(',', i);
      fields.push_back(Trim(text.substr(i, comma - i)));
      i = comma;
    }
    if (i == std::string_view::npos) return;
    if (fields.size() >= kMaxColumns) {
      throw Error(kBadTable, "more than " + std::to_string(kMaxColumns) + " fields");
    }
    ++i;
  }
}

const std::vector<std::string>& CsvReader::ReadHeader() {
  std::string_view text;
  if (!NextLine(text)) {
    line = 1;
    throw Error(kBadTable, "the file is empty; a header line was expected");
  }
  // A byte-order mark, as some spreadsheets write, is not part of the first name.
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  std::vector<std::string_view> fields;
  Split(text, fields);
  if (fields.size() == 1) {
    for (const char* sep : {";", "\t", "|"}) {
      if (text.find(sep) != std::string_view::npos) {
        throw Error(kBadTable, std::string("the header has no commas but is separated by ") +
                                   (*sep == '\t' ? "tabs" : std::string("'") + sep + "'") +
                                   "; this program reads comma-separated files");
      }
    }
  }
  std::set<std::string_view> seen;
  for (std::string_view field : fields) {
    if (field.empty()) throw Error(kBadTable, "a column of the header has no name");
    if (!seen.insert(field).second) {
      throw Error(kBadTable, "column '" + std::string(field) + "' appears twice");
    }
  }
  header.assign(fields.begin(), fields.end());
  dataLine = line;
  dataStart = consumed - static_cast<std::streamoff>(end - begin);
  return header;
}

bool CsvReader::Next(std::vector<std::string_view>& fields) {
  std::string_view text;
  do {
    if (!NextLine(text)) return false;
  } while (Trim(text).empty());
  Split(text, fields);
  if (fields.size() != header.size()) {
    throw Error(kBadTable, "expected " + std::to_string(header.size()) + " fields, found " +
                               std::to_string(fields.size()));
  }
  return true;
}

void CsvReader::Rewind() {
  SeekTo(dataStart);
  line = dataLine;
}

bool ParseNumber(std::string_view field, double& value) {
  if (!field.empty() && field[0] == '+') {
    field.remove_prefix(1);
    if (!field.empty() && (field[0] == '+' || field[0] == '-')) return false;
  }
  const char* last = field.data() + field.size();
  const std::from_chars_result r = std::from_chars(field.data(), last, value);
  return !field.empty() && r.ec == std::errc() && r.ptr == last && std::isfinite(value);
}

bool IsMissingCell(std::string_view field) {
  return field.empty() || field == "NA";
}

}  // namespace linreg
