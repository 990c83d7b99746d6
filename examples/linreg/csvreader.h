// A streaming reader of comma-separated text for the regression component:
// a header of names, then rows of fields, read a buffer at a time so that a
// file of any length passes through a fixed amount of memory. Fields may be
// "quoted" (a doubled quote inside stands for one); others are trimmed. Every
// problem is an InputError whose text names the file and the line.
#ifndef QX_EXAMPLES_LINREG_CSVREADER_H
#define QX_EXAMPLES_LINREG_CSVREADER_H

#include <deque>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "linregstatus.h"

namespace linreg {

class CsvReader {
 public:
  // Longest line, and most columns, that the reader accepts.
  static constexpr std::size_t kMaxLineBytes = 1 << 20;
  static constexpr std::size_t kMaxColumns = 10000;

  // Reads from `in`, which must outlive the reader; `shownName` is the name
  // that messages give the file.
  CsvReader(std::istream& in, std::string shownName);

  // The header: names unquoted, a byte-order mark dropped. Refuses an empty
  // file, a header separated by something other than commas, an empty or a
  // repeated name.
  const std::vector<std::string>& ReadHeader();
  // The next row that isn't blank, with as many fields as the header; false
  // at the end. The views stay valid until the next call.
  bool Next(std::vector<std::string_view>& fields);
  // Back to the first row after the header (the stream must be seekable).
  void Rewind();
  // After the header, keeps to share `index` of `count`: the rows whose line
  // starts in that share of the bytes after the header, cut into `count`
  // equal parts. A line belongs to the share in which it starts, so the
  // shares of all indexes hold every row once; one may hold none. The stream
  // must be seekable. Line numbers stay those of the whole file.
  void KeepShare(int index, int count);

  const std::string& Name() const { return name; }
  // The file line of the row last returned (of the header before any row).
  long Line() const;
  // An error about the current line.
  InputError Error(Code code, const std::string& what) const;

 private:
  // The next line without its end, or false at the end of the input.
  bool NextLine(std::string_view& text);
  void Split(std::string_view text, std::vector<std::string_view>& fields);
  void Fill();
  // Moves the reading to `offset` bytes after the origin.
  void SeekTo(std::streamoff offset);
  // The number of line ends before `offset`, read from the origin; the
  // reading position is kept.
  long LinesBefore(std::streamoff offset) const;

  std::istream& in;
  std::string name;
  std::vector<std::string> header;
  std::vector<char> buffer;
  std::size_t begin = 0, end = 0;  // unread bytes in buffer
  bool atEof = false;
  long line = 0;
  long dataLine = 0;
  std::streampos origin;         // where the stream stood at the start; -1 if unknown
  std::streamoff consumed = 0;   // bytes read from it since
  std::streamoff dataStart = 0;  // offset of the first row after the header
  std::streamoff shareEnd = -1;  // rows start before it; -1: no share kept
  mutable long shareLines = -1;  // lines before the share, counted when first asked
  // Quoted fields that held "", one entry per such field of a line; a deque,
  // so that adding one leaves the views of the others valid.
  std::deque<std::string> unescaped;
};

// A finite number that takes up the whole field (a leading '+' allowed); the
// text is read the same in every locale.
bool ParseNumber(std::string_view field, double& value);
// An empty field or NA: a missing cell.
bool IsMissingCell(std::string_view field);

}  // namespace linreg

#endif  // QX_EXAMPLES_LINREG_CSVREADER_H
