#ifndef QX_MARKUP_INTERNAL_XMLOUTPUT_H
#define QX_MARKUP_INTERNAL_XMLOUTPUT_H

#include <cstddef>
#include <ostream>
#include <string>

namespace QXXML_850 {
namespace internal {

// Appends `text` as it goes into an attribute value, in one pass over a
// table: the same bytes as XMLUtil::Escape, whose steps it folds together.
void AppendEscapedValue(std::string& out, const std::string& text);
// Appends `text` as a text node writes it: "&" and "<" as references, the
// rest as it stands.
void AppendEscapedText(std::string& out, const std::string& text);

// Where the tree writer puts its text: straight onto the end of a string, or
// gathered and handed to a stream in blocks, so that a stream sees a few large
// writes instead of one call per character. In UTF-8 mode each piece is
// converted from the locale's encoding on its own, as the piecewise writer
// converted it, so text the converter stops on cuts the same piece short.
class XMLOutput {
 public:
  explicit XMLOutput(std::string& out);
  XMLOutput(std::ostream& os, bool utf8);
  ~XMLOutput();
  XMLOutput(const XMLOutput&) = delete;
  XMLOutput& operator=(const XMLOutput&) = delete;

  std::string& Text() { return *text; }
  std::ostream* Stream() const { return os; }
  bool Utf8() const { return utf8; }

  // Where the next piece begins; EndPiece converts it once it is complete.
  std::size_t Mark() const { return text->size(); }
  void EndPiece(std::size_t start) {
    if (utf8) Convert(start);
  }
  // One whole piece.
  void Piece(const char* piece, std::size_t size) {
    const std::size_t start = Mark();
    text->append(piece, size);
    EndPiece(start);
  }
  void Piece(const std::string& piece) { Piece(piece.data(), piece.size()); }

  // Hands a full block to the stream; a no-op when writing to a string.
  void FlushIfFull() {
    if (os != nullptr && text->size() >= kBlock) Flush();
  }
  // Hands everything gathered so far to the stream.
  void Flush();

 private:
  static constexpr std::size_t kBlock = 32768;

  void Convert(std::size_t start);

  std::string own;
  std::string* text;
  std::ostream* os;
  bool utf8;
  // The locale's encoding leaves the 128 ASCII bytes as they are, so pure
  // ASCII pieces need no converter.
  bool asciiUnchanged;
};

}  // namespace internal
}  // namespace QXXML_850

#endif  // QX_MARKUP_INTERNAL_XMLOUTPUT_H
