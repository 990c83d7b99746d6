#include "qx/markup/xmlutil.h"

#include <cstdio>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "qx/foundation/mbtoutf8_unix.h"
#include "qx/markup/internal/xmloutput.h"

namespace QXXML_850 {

const int XMLUtil::TAB_LENGTH = 8;
const char XMLUtil::FIRST_LINE[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>";
const char XMLUtil::ROWSEP[] = "\n";
const char XMLUtil::ITEMINDENT[] = "\t";
const char XMLUtil::QUOTE[] = "\"";
const char XMLUtil::EQUAL[] = "=";
const char XMLUtil::BEGIN_ELEMENT[] = "<";
const char XMLUtil::BEGIN_PREPROCESSOR[] = "!";
const char XMLUtil::END_ELEMENT[] = ">";
const char XMLUtil::BEGIN_END_ELEMENT[] = "/";
const char XMLUtil::SPACE[] = " ";
const char XMLUtil::AMPERSAND[] = "&";
const char XMLUtil::LESS_THAN[] = "<";
const char XMLUtil::GREATER_THAN[] = ">";
const char XMLUtil::XML_AMPERSAND[] = "&amp;";
const char XMLUtil::XML_LESS_THAN[] = "&lt;";
const char XMLUtil::XML_GREATER_THAN[] = "&gt;";
const char XMLUtil::XML_QUOTE[] = "&quot;";
const char XMLUtil::XML_CHARREF_TAB[] = "&#9;";
const char XMLUtil::XML_CHARREF_NL[] = "&#10;";
const char XMLUtil::XML_CHARREF_CR[] = "&#13;";
const char XMLUtil::XML_CHARREF_SP[] = "&#32;";
const char XMLUtil::XML_SP_CHARREF_SP[] = " &#32;";

std::string XMLUtil::GetTabs(int n) {
  return n < 1 ? std::string() : std::string(static_cast<size_t>(n), '\t');
}

std::string XMLUtil::toString(int value) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%d", value);
  return buffer;
}

int XMLUtil::ReplaceAtPos(std::string& target, const char* find, const std::string& replacement,
                          int& position) {
  if (position < 0 || static_cast<long>(target.size()) < position) return -1;
  const size_t findLength = find == nullptr ? 0 : std::strlen(find);
  const size_t hit =
      findLength == 0 ? std::string::npos : target.find(find, static_cast<size_t>(position));
  if (hit == std::string::npos) {
    --position;  // the distance of a miss counts as -1
    return -1;
  }
  target.replace(hit, findLength, replacement);
  position = static_cast<int>(hit);
  return position;
}

int XMLUtil::ReplaceString(std::string& target, const char* find, const std::string& replacement) {
  int position = 0;
  return ReplaceAtPos(target, find, replacement, position);
}

// The same result as repeating ReplaceAtPos and stepping over each
// replacement, built in one pass so a text full of specials stays linear.
void XMLUtil::ReplaceAll(std::string& target, const char* find, const std::string& replacement) {
  const size_t findLength = find == nullptr ? 0 : std::strlen(find);
  if (findLength == 0) return;
  size_t hit = target.find(find);
  if (hit == std::string::npos) return;
  std::string result;
  result.reserve(target.size());
  size_t from = 0;
  for (; hit != std::string::npos; hit = target.find(find, from)) {
    result.append(target, from, hit - from);
    result += replacement;
    from = hit + findLength;
  }
  result.append(target, from, std::string::npos);
  target.swap(result);
}

std::string XMLUtil::Escape(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  internal::AppendEscapedValue(result, text);
  return result;
}

// One write for the whole text: the same bytes, and the same stream state, as
// putting them one by one.
int Write(std::ostream& os, const std::string& text) {
  if (!text.empty()) os.write(text.data(), static_cast<std::streamsize>(text.size()));
  return 0;
}

int WriteUTF(std::ostream& os, const std::string& text) {
  return Write(os, MbToUTF8(text));
}

namespace internal {

namespace {

// For each byte, the reference it becomes in an attribute value, with its
// length; length 0 leaves the byte as it is. A blank has length 1 here: it
// may become "&#32;", depending on its neighbours.
struct ValueEscapes {
  const char* text[256];
  unsigned char length[256];
};

constexpr ValueEscapes MakeValueEscapes() {
  ValueEscapes table{};
  const struct {
    unsigned char c;
    const char* text;
    unsigned char length;
  } entries[] = {{'&', "&amp;", 5}, {'<', "&lt;", 4},   {'>', "&gt;", 4},   {'"', "&quot;", 6},
                 {'\t', "&#9;", 4}, {'\n', "&#10;", 5}, {'\r', "&#13;", 5}, {' ', " ", 1}};
  for (const auto& entry : entries) {
    table.text[entry.c] = entry.text;
    table.length[entry.c] = entry.length;
  }
  return table;
}

constexpr ValueEscapes kValueEscapes = MakeValueEscapes();

}  // namespace

// Escape's steps, one character at a time. The seven single characters map
// to fixed references, and none of the references holds a character that a
// later step replaces. Blanks come in runs that the other steps leave intact:
// pairing them from the left turns the second, fourth, ... blank of a run into
// "&#32;", and the ends of the text then turn a blank at the very start, or an
// unpaired blank at the very end, into "&#32;" as well.
void AppendEscapedValue(std::string& out, const std::string& text) {
  const char* s = text.data();
  const std::size_t n = text.size();
  std::size_t run = 0;  // start of the bytes not yet appended
  for (std::size_t i = 0; i < n; ++i) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    const unsigned char length = kValueEscapes.length[c];
    if (length == 0) continue;
    if (c == ' ') {
      if (i != 0 && i + 1 < n && s[i + 1] != ' ') continue;  // a lone blank inside the text
      out.append(s + run, i - run);
      std::size_t end = i;
      while (end < n && s[end] == ' ')
        ++end;
      for (std::size_t k = i; k < end; ++k) {
        if (((k - i) & 1) != 0 || k == 0 || k + 1 == n) {
          out.append(XMLUtil::XML_CHARREF_SP, 5);
        } else {
          out.push_back(' ');
        }
      }
      run = end;
      i = end - 1;
      continue;
    }
    out.append(s + run, i - run);
    out.append(kValueEscapes.text[c], length);
    run = i + 1;
  }
  out.append(s + run, n - run);
}

namespace {

// The reference of a text node's special byte at `p`; returns the end.
inline char* PutTextReference(char* p, char c) {
  if (c == '&') {
    std::memcpy(p, XMLUtil::XML_AMPERSAND, 5);
    return p + 5;
  }
  std::memcpy(p, XMLUtil::XML_LESS_THAN, 4);
  return p + 4;
}

#ifdef __SSE2__
// The sum of the 16 bytes of `v`.
inline std::size_t SumBytes(__m128i v) {
  const __m128i sums = _mm_sad_epu8(v, _mm_setzero_si128());
  return static_cast<std::size_t>(_mm_cvtsi128_si32(sums)) +
         static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
}
#endif

}  // namespace

// Two passes over 16 bytes at a time: count the ampersands and less-thans to
// size the result once, then copy, stopping only at those bytes. Long texts
// are where a document's bytes are, and most of them need no reference.
void AppendEscapedText(std::string& out, const std::string& text) {
  const char* s = text.data();
  const std::size_t n = text.size();
  std::size_t ampersands = 0, lessThans = 0, i = 0;
#ifdef __SSE2__
  const __m128i ampersand = _mm_set1_epi8('&'), lessThan = _mm_set1_epi8('<');
  while (i + 16 <= n) {
    // Byte counters, summed before any of them can pass 255.
    __m128i countA = _mm_setzero_si128(), countL = _mm_setzero_si128();
    for (int k = 0; k < 255 && i + 16 <= n; ++k, i += 16) {
      const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      countA = _mm_sub_epi8(countA, _mm_cmpeq_epi8(v, ampersand));
      countL = _mm_sub_epi8(countL, _mm_cmpeq_epi8(v, lessThan));
    }
    ampersands += SumBytes(countA);
    lessThans += SumBytes(countL);
  }
#endif
  for (; i < n; ++i) {
    ampersands += s[i] == '&';
    lessThans += s[i] == '<';
  }
  if (ampersands + lessThans == 0) {
    out.append(s, n);
    return;
  }
  const std::size_t start = out.size();
  out.resize(start + n + 4 * ampersands + 3 * lessThans);
  char* p = &out[start];
  i = 0;
#ifdef __SSE2__
  // The output never runs shorter than the input left, so a whole block may
  // be stored before the position of its first special byte is known.
  while (i + 16 <= n) {
    const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
    const unsigned specials = static_cast<unsigned>(
        _mm_movemask_epi8(_mm_or_si128(_mm_cmpeq_epi8(v, ampersand), _mm_cmpeq_epi8(v, lessThan))));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
    if (specials == 0) {
      p += 16;
      i += 16;
      continue;
    }
    const unsigned plain = static_cast<unsigned>(__builtin_ctz(specials));
    p = PutTextReference(p + plain, s[i + plain]);
    i += plain + 1;
  }
#endif
  for (; i < n; ++i) {
    if (s[i] == '&' || s[i] == '<') {
      p = PutTextReference(p, s[i]);
    } else {
      *p++ = s[i];
    }
  }
}

XMLOutput::XMLOutput(std::string& out)
    : text(&out), os(nullptr), utf8(false), asciiUnchanged(true) {}

XMLOutput::XMLOutput(std::ostream& stream, bool toUtf8)
    : text(&own), os(&stream), utf8(toUtf8), asciiUnchanged(true) {
  own.reserve(kBlock + kBlock / 4);
  if (utf8) {
    std::string ascii(128, '\0');
    for (int c = 0; c < 128; ++c)
      ascii[static_cast<std::size_t>(c)] = static_cast<char>(c);
    asciiUnchanged = MbToUTF8(ascii) == ascii;
  }
}

XMLOutput::~XMLOutput() {
  if (os != nullptr) Flush();
}

void XMLOutput::Flush() {
  if (os == nullptr) return;
  Write(*os, own);
  own.clear();
}

void XMLOutput::Convert(std::size_t start) {
  const char* piece = text->data() + start;
  const std::size_t size = text->size() - start;
  if (asciiUnchanged) {
    std::size_t i = 0;
    while (i < size && static_cast<unsigned char>(piece[i]) < 0x80)
      ++i;
    if (i == size) return;
  }
  std::string converted = MbToUTF8(std::string(piece, size));
  text->resize(start);
  text->append(converted);
}

}  // namespace internal

}  // namespace QXXML_850
