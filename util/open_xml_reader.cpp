#include "util/open_xml_reader.h"

#include <zip.h>

#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <pugixml.hpp>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/text_convert.h"

namespace {
// Package parts other than the sheet and the shared strings are small; anything larger is hostile.
constexpr uint64_t kMaxSmallPartBytes = 64ull * 1024 * 1024;
// Longest single tag or text run the scanner holds at once.
constexpr size_t kMaxTokenBytes = 16 * 1024 * 1024;
constexpr size_t kChunkBytes = 64 * 1024;
// Deepest element nesting accepted; workbook parts nest a handful of levels.
constexpr size_t kMaxDepth = 256;
// Most shared strings accepted: more than a sheet of the largest size can use in one column.
constexpr size_t kMaxSharedStrings = 16u * 1024 * 1024;
// Most characters the shared strings and one cell's value may hold: a read collects at most 32 Mi
// characters of text, so more in one place is hostile (or could never be read anyway).
constexpr size_t kMaxTextChars = 32u * 1024 * 1024;
// Most custom number formats accepted in the styles; real workbooks have a few dozen, and a
// workbook with more fails the read.
constexpr size_t kMaxNumberFormats = 65536;

struct ZipCloser {
    void operator()(zip_t* zip) const { zip_discard(zip); }
};
struct ZipFileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using ZipPtr = std::unique_ptr<zip_t, ZipCloser>;
using ZipFilePtr = std::unique_ptr<zip_file_t, ZipFileCloser>;

// One archive entry read in chunks, never more than `cap` bytes whatever its header claims.
class ZipEntryStream {
public:
    ZipEntryStream(zip_t* zip, const std::string& name, uint64_t cap) : m_cap(cap) {
        const zip_int64_t index = zip_name_locate(zip, name.c_str(), 0);
        if (index >= 0) m_file.reset(zip_fopen_index(zip, static_cast<zip_uint64_t>(index), 0));
    }
    bool IsOpen() const { return m_file != nullptr; }
    bool Failed() const { return m_failed; }
    // Appends up to one chunk to `out`; false at the end or on failure.
    bool ReadChunk(std::string& out) {
        if (!m_file || m_failed) return false;
        char chunk[kChunkBytes];
        const zip_int64_t n = zip_fread(m_file.get(), chunk, sizeof chunk);
        if (n < 0) m_failed = true;
        if (n <= 0) return false;
        m_total += static_cast<uint64_t>(n);
        if (m_total > m_cap) {
            m_failed = true;
            return false;
        }
        out.append(chunk, static_cast<size_t>(n));
        return true;
    }

private:
    ZipFilePtr m_file;
    uint64_t m_cap;
    uint64_t m_total = 0;
    bool m_failed = false;
};

bool ReadWholeEntry(zip_t* zip, const std::string& name, std::string& out) {
    ZipEntryStream stream(zip, name, kMaxSmallPartBytes);
    if (!stream.IsOpen()) return false;
    out.clear();
    while (stream.ReadChunk(out)) {
    }
    return !stream.Failed();
}

std::string_view LocalName(std::string_view name) {
    const size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

void AppendUtf8(std::string& out, uint32_t c) {
    const wchar_t wide = static_cast<wchar_t>(c);
    out += ToUtf8(std::wstring_view(&wide, 1));
}

// Appends `raw` with its XML references resolved; an unknown reference is kept as written.
void AppendXmlText(std::string& out, std::string_view raw) {
    size_t i = 0;
    while (i < raw.size()) {
        const size_t amp = raw.find('&', i);
        if (amp == std::string_view::npos) {
            out.append(raw.substr(i));
            return;
        }
        out.append(raw.substr(i, amp - i));
        const size_t semi = raw.find(';', amp);
        if (semi == std::string_view::npos || semi - amp > 12) {
            out += '&';
            i = amp + 1;
            continue;
        }
        const std::string_view ref = raw.substr(amp + 1, semi - amp - 1);
        if (ref == "lt")
            out += '<';
        else if (ref == "gt")
            out += '>';
        else if (ref == "amp")
            out += '&';
        else if (ref == "quot")
            out += '"';
        else if (ref == "apos")
            out += '\'';
        else if (ref.size() > 1 && ref[0] == '#') {
            const bool hex = ref[1] == 'x' || ref[1] == 'X';
            const std::string_view digits = ref.substr(hex ? 2 : 1);
            uint32_t code = 0;
            const auto r =
                std::from_chars(digits.data(), digits.data() + digits.size(), code, hex ? 16 : 10);
            if (r.ec == std::errc() && r.ptr == digits.data() + digits.size())
                AppendUtf8(out, code);
            else
                out.append(raw.substr(amp, semi - amp + 1));
        } else {
            out.append(raw.substr(amp, semi - amp + 1));
        }
        i = semi + 1;
    }
}

// Resolves the "_xHHHH_" escapes that workbook writers use for control characters.
std::string DecodeOoxmlEscapes(const std::string& text) {
    if (text.find("_x") == std::string::npos) return text;
    std::string out;
    out.reserve(text.size());
    size_t i = 0;
    while (i < text.size()) {
        uint32_t code = 0;
        if (text.compare(i, 2, "_x") == 0 && i + 7 <= text.size() && text[i + 6] == '_' &&
            std::from_chars(text.data() + i + 2, text.data() + i + 6, code, 16).ptr ==
                text.data() + i + 6) {
            AppendUtf8(out, code);
            i += 7;
        } else {
            out += text[i++];
        }
    }
    return out;
}

// Value of attribute `name` in the raw attribute text of a tag.
bool FindAttribute(std::string_view attrs, std::string_view name, std::string_view& value) {
    size_t i = 0;
    const size_t n = attrs.size();
    while (i < n) {
        while (i < n &&
               (attrs[i] == ' ' || attrs[i] == '\t' || attrs[i] == '\r' || attrs[i] == '\n'))
            ++i;
        const size_t nameStart = i;
        while (i < n && attrs[i] != '=' && attrs[i] != ' ' && attrs[i] != '/') ++i;
        const std::string_view attrName = attrs.substr(nameStart, i - nameStart);
        while (i < n && attrs[i] == ' ') ++i;
        if (i >= n || attrs[i] != '=') return false;
        ++i;
        while (i < n && attrs[i] == ' ') ++i;
        if (i >= n || (attrs[i] != '"' && attrs[i] != '\'')) return false;
        const char quote = attrs[i++];
        const size_t end = attrs.find(quote, i);
        if (end == std::string_view::npos) return false;
        if (attrName == name) {
            value = attrs.substr(i, end - i);
            return true;
        }
        i = end + 1;
    }
    return false;
}

// A pull scanner over one XML entry: tags and text runs in document order, nesting checked.
// Views stay valid until the next call of Next().
class XmlScanner {
public:
    enum Kind { Start, End, Text, Done, Error };

    explicit XmlScanner(ZipEntryStream& in) : m_in(in) {}

    Kind Next() {
        if (m_pos >= kChunkBytes) {
            m_buf.erase(0, m_pos);
            m_pos = 0;
        }
        for (;;) {
            if (m_pos >= m_buf.size() && !More()) {
                return m_in.Failed() || !m_stack.empty() || !m_sawRoot ? Error : Done;
            }
            if (m_buf[m_pos] != '<') return ScanText();
            if (!Available(2)) return Error;
            const char second = m_buf[m_pos + 1];
            if (second == '?') {
                if (!SkipPast("?>")) return Error;
            } else if (second == '!') {
                if (!Available(9)) return Error;
                if (m_buf.compare(m_pos, 4, "<!--") == 0) {
                    if (!SkipPast("-->")) return Error;
                } else if (m_buf.compare(m_pos, 9, "<![CDATA[") == 0) {
                    size_t end = 0;
                    if (m_stack.empty() || !Find("]]>", m_pos + 9, end)) return Error;
                    text = std::string_view(m_buf).substr(m_pos + 9, end - m_pos - 9);
                    cdata = true;
                    m_pos = end + 3;
                    return Text;
                } else {
                    return Error;  // document type declarations are refused
                }
            } else {
                return ScanTag();
            }
        }
    }

    std::string_view name;   // local name of a Start or End tag
    std::string_view attrs;  // raw attribute text of a Start tag
    bool selfClosing = false;
    std::string_view text;  // raw text; CDATA sections come verbatim
    bool cdata = false;

private:
    bool More() {
        if (m_buf.size() - m_pos > kMaxTokenBytes) return false;
        return m_in.ReadChunk(m_buf);
    }
    bool Available(size_t count) {
        while (m_buf.size() - m_pos < count)
            if (!More()) return false;
        return true;
    }
    bool Find(std::string_view what, size_t from, size_t& at) {
        for (;;) {
            at = m_buf.find(what, from);
            if (at != std::string::npos) return true;
            from = m_buf.size() >= what.size() ? m_buf.size() - what.size() + 1 : 0;
            if (!More()) return false;
        }
    }
    bool SkipPast(std::string_view what) {
        size_t at = 0;
        if (!Find(what, m_pos + 2, at)) return false;
        m_pos = at + what.size();
        return true;
    }
    Kind ScanText() {
        size_t lt = 0;
        if (!Find("<", m_pos, lt)) {
            if (m_in.Failed()) return Error;
            lt = m_buf.size();
        }
        text = std::string_view(m_buf).substr(m_pos, lt - m_pos);
        cdata = false;
        m_pos = lt;
        if (m_stack.empty() && text.find_first_not_of(" \t\r\n") != std::string_view::npos)
            return Error;
        return Text;
    }
    Kind ScanTag() {
        // The tag ends at the first '>' outside quotes.
        size_t i = m_pos + 1;
        char quote = 0;
        for (;; ++i) {
            if (i >= m_buf.size() && !More()) return Error;
            const char c = m_buf[i];
            if (quote) {
                if (c == quote) quote = 0;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>') {
                break;
            } else if (c == '<') {
                return Error;
            }
        }
        std::string_view tag = std::string_view(m_buf).substr(m_pos + 1, i - m_pos - 1);
        m_pos = i + 1;
        if (tag.empty()) return Error;  // "<>"
        const bool closing = tag.front() == '/';
        if (closing) tag.remove_prefix(1);
        selfClosing = !closing && !tag.empty() && tag.back() == '/';
        if (selfClosing) tag.remove_suffix(1);
        const size_t nameEnd = tag.find_first_of(" \t\r\n");
        const std::string_view fullName = tag.substr(0, nameEnd);
        if (fullName.empty()) return Error;
        name = LocalName(fullName);
        if (closing) {
            if (m_stack.empty() || m_stack.back() != fullName) return Error;
            m_stack.pop_back();
            return End;
        }
        attrs = nameEnd == std::string_view::npos ? std::string_view() : tag.substr(nameEnd);
        if (m_stack.empty()) {
            if (m_sawRoot) return Error;
            m_sawRoot = true;
        }
        if (!selfClosing) {
            if (m_stack.size() >= kMaxDepth) return Error;
            m_stack.emplace_back(fullName);
        }
        return Start;
    }

    ZipEntryStream& m_in;
    std::string m_buf;
    size_t m_pos = 0;
    std::vector<std::string> m_stack;
    bool m_sawRoot = false;
};

// Joins a relationship target to the folder of the part that names it.
std::string ResolveTarget(const std::string& sourcePart, const std::string& target) {
    std::vector<std::string> parts;
    std::string path = target;
    if (!path.empty() && path[0] == '/') {
        path.erase(0, 1);
    } else {
        const size_t slash = sourcePart.rfind('/');
        if (slash != std::string::npos) path = sourcePart.substr(0, slash + 1) + path;
    }
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find('/', start);
        if (end == std::string::npos) end = path.size();
        const std::string segment = path.substr(start, end - start);
        if (segment == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!segment.empty() && segment != ".") {
            parts.push_back(segment);
        }
        start = end + 1;
    }
    std::string joined;
    for (const std::string& p : parts) joined += (joined.empty() ? "" : "/") + p;
    return joined;
}

std::string RelsPartOf(const std::string& part) {
    const size_t slash = part.rfind('/');
    const std::string folder =
        slash == std::string::npos ? std::string() : part.substr(0, slash + 1);
    const std::string file = slash == std::string::npos ? part : part.substr(slash + 1);
    return folder + "_rels/" + file + ".rels";
}

bool LoadXmlPart(zip_t* zip, const std::string& name, pugi::xml_document& doc) {
    std::string data;
    if (!ReadWholeEntry(zip, name, data)) return false;
    return static_cast<bool>(doc.load_buffer(data.data(), data.size()));
}

pugi::xml_node ChildByLocalName(pugi::xml_node node, std::string_view local) {
    for (pugi::xml_node child : node.children())
        if (LocalName(child.name()) == local) return child;
    return {};
}

bool EndsWith(std::string_view text, std::string_view tail) {
    return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

// Relationship targets of a part, resolved, by id and by type.
struct Relationships {
    std::vector<std::pair<std::string, std::string>> byId;    // id, target
    std::vector<std::pair<std::string, std::string>> byType;  // type, target
    std::string TargetOfType(std::string_view typeTail) const {
        for (const auto& [type, target] : byType)
            if (EndsWith(type, typeTail)) return target;
        return {};
    }
    std::string TargetOfId(std::string_view id) const {
        for (const auto& [relId, target] : byId)
            if (relId == id) return target;
        return {};
    }
};

Relationships LoadRelationships(zip_t* zip, const std::string& part) {
    Relationships rels;
    pugi::xml_document doc;
    if (!LoadXmlPart(zip, RelsPartOf(part), doc)) return rels;
    for (pugi::xml_node rel : doc.document_element().children()) {
        if (LocalName(rel.name()) != "Relationship") continue;
        if (std::string_view(rel.attribute("TargetMode").value()) == "External") continue;
        const std::string target = ResolveTarget(part, rel.attribute("Target").value());
        rels.byId.emplace_back(rel.attribute("Id").value(), target);
        rels.byType.emplace_back(rel.attribute("Type").value(), target);
    }
    return rels;
}

// Number format codes that show dates or times; such cells read as dates, not numbers.
bool IsDateFormatCode(std::string_view code) {
    for (size_t i = 0; i < code.size(); ++i) {
        const char c = code[i];
        if (c == '"') {
            const size_t end = code.find('"', i + 1);
            if (end == std::string_view::npos) return false;
            i = end;
        } else if (c == '\\' || c == '_' || c == '*') {
            ++i;
        } else if (c == '[') {
            const size_t end = code.find(']', i + 1);
            if (end == std::string_view::npos) return false;
            const std::string_view inside = code.substr(i + 1, end - i - 1);
            // Elapsed time ([h], [mm], [ss]) is a time; colours and locales are not.
            if (!inside.empty() && inside.find_first_not_of("hHmMsS") == std::string_view::npos)
                return true;
            i = end;
        } else if (std::strchr("dDmMyYhHsS", c) && c != '\0') {
            return true;
        }
    }
    return false;
}

bool IsBuiltInDateFormat(unsigned id) {
    return (id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) ||
           (id >= 50 && id <= 58);
}

// For each cell style index: whether it shows a date. Styles that cannot be read show no dates;
// false only when the styles hold more custom number formats than accepted.
bool LoadDateStyles(zip_t* zip, const std::string& stylesPart, std::vector<bool>& dateStyles) {
    dateStyles.clear();
    pugi::xml_document doc;
    if (stylesPart.empty() || !LoadXmlPart(zip, stylesPart, doc)) return true;
    const pugi::xml_node root = doc.document_element();
    // A later format of the same id replaces an earlier one.
    std::unordered_map<unsigned, bool> customIsDate;
    size_t formats = 0;
    for (pugi::xml_node fmt : ChildByLocalName(root, "numFmts").children()) {
        if (++formats > kMaxNumberFormats) return false;
        customIsDate[fmt.attribute("numFmtId").as_uint()] =
            IsDateFormatCode(fmt.attribute("formatCode").value());
    }
    for (pugi::xml_node xf : ChildByLocalName(root, "cellXfs").children()) {
        const unsigned id = xf.attribute("numFmtId").as_uint();
        const auto custom = customIsDate.find(id);
        dateStyles.push_back(custom != customIsDate.end() ? custom->second
                                                          : IsBuiltInDateFormat(id));
    }
    return true;
}

// Characters of UTF-8 text: every byte that does not continue a sequence.
size_t CountUtf8Chars(std::string_view text) {
    size_t count = 0;
    for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return count;
}

// Appends a text run as written (CDATA verbatim, references resolved) and returns its characters.
size_t AppendRun(std::string& out, std::string_view raw, bool cdata) {
    const size_t before = out.size();
    if (cdata)
        out.append(raw);
    else
        AppendXmlText(out, raw);
    return CountUtf8Chars(std::string_view(out).substr(before));
}

// Shared strings, kept in one pool; the phonetic runs (rPh) are not part of the text. A string
// inside a string, or more text than one read can collect, fails the load.
class SharedStrings {
public:
    bool Load(zip_t* zip, const std::string& part) {
        if (part.empty()) return true;
        ZipEntryStream in(zip, part, kMaxZipEntryBytes);
        if (!in.IsOpen()) return true;
        XmlScanner xml(in);
        std::string current;
        bool inString = false, inText = false;
        int phonetic = 0;
        size_t chars = 0;  // in the pool and the string being read, as written
        for (;;) {
            switch (xml.Next()) {
                case XmlScanner::Start:
                    if (xml.name == "si") {
                        if (inString || m_offsets.size() >= kMaxSharedStrings) return false;
                        current.clear();
                        if (xml.selfClosing)
                            Add(current);
                        else
                            inString = true;
                    } else if (xml.name == "rPh" && !xml.selfClosing) {
                        ++phonetic;
                    } else if (xml.name == "t") {
                        inText = !xml.selfClosing;
                    }
                    break;
                case XmlScanner::End:
                    if (xml.name == "si") {
                        Add(DecodeOoxmlEscapes(current));
                        inString = false;
                    } else if (xml.name == "rPh")
                        --phonetic;
                    else if (xml.name == "t")
                        inText = false;
                    break;
                case XmlScanner::Text:
                    if (inString && inText && phonetic == 0) {
                        chars += AppendRun(current, xml.text, xml.cdata);
                        if (chars > kMaxTextChars) return false;
                    }
                    break;
                case XmlScanner::Done:
                    return true;
                case XmlScanner::Error:
                    return false;
            }
        }
    }
    size_t Count() const { return m_offsets.size(); }
    std::string_view At(size_t index) const {
        const size_t start = m_offsets[index];
        const size_t end = index + 1 < m_offsets.size() ? m_offsets[index + 1] : m_pool.size();
        return std::string_view(m_pool).substr(start, end - start);
    }

private:
    void Add(const std::string& text) {
        m_offsets.push_back(m_pool.size());
        m_pool += text;
    }
    std::string m_pool;
    std::vector<size_t> m_offsets;  // 64-bit: 32-bit offsets would wrap past 4 GiB
};

// "B12" to 0-based column 1 and row 11; false when the text is no cell reference in range.
bool ParseCellReference(std::string_view ref, uint32_t& column, uint32_t& row) {
    size_t i = 0;
    uint32_t col = 0;
    for (; i < ref.size() && i < 3 && std::isalpha(static_cast<unsigned char>(ref[i])); ++i)
        col = col * 26 +
              static_cast<uint32_t>(std::toupper(static_cast<unsigned char>(ref[i])) - 'A' + 1);
    uint32_t r = 0;
    const auto result = std::from_chars(ref.data() + i, ref.data() + ref.size(), r);
    if (col == 0 || col > kMaxSheetColumns || result.ec != std::errc() ||
        result.ptr != ref.data() + ref.size() || r == 0 || r > kMaxSheetRows)
        return false;
    column = col - 1;
    row = r - 1;
    return true;
}

bool ParseUnsigned(std::string_view text, uint32_t& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// Streams the sheet's cells to the sink, only the requested columns in full.
SheetReadStatus ScanSheet(zip_t* zip, const std::string& part, const SharedStrings& strings,
                          const std::vector<bool>& dateStyles, const SheetRequest& request,
                          CSheetCellSink& sink, SheetExtent& extent) {
    ZipEntryStream in(zip, part, kMaxZipEntryBytes);
    if (!in.IsOpen()) return SheetReadStatus::NotReadable;
    XmlScanner xml(in);
    uint32_t row = 0;  // 1-based row of the current <row>; 0 before the first
    uint32_t nextColumn = 0;
    // The cell being read.
    bool inCell = false, wanted = false, inValue = false, inInline = false, inText = false;
    int phonetic = 0;
    uint32_t cellColumn = 0, cellRow = 0;
    std::string type, value;
    size_t valueChars = 0;
    bool isDate = false;
    for (;;) {
        const XmlScanner::Kind kind = xml.Next();
        if (kind == XmlScanner::Error) return SheetReadStatus::NotReadable;
        if (kind == XmlScanner::Done) return SheetReadStatus::Ok;
        if (kind == XmlScanner::Text) {
            if (wanted && (inValue || (inInline && inText && phonetic == 0))) {
                valueChars += AppendRun(value, xml.text, xml.cdata);
                if (valueChars > kMaxTextChars) return SheetReadStatus::NotReadable;
            }
            continue;
        }
        const std::string_view name = xml.name;
        if (kind == XmlScanner::Start) {
            if (name == "row") {
                std::string_view r;
                uint32_t number = 0;
                if (FindAttribute(xml.attrs, "r", r)) {
                    if (!ParseUnsigned(r, number) || number == 0 || number > kMaxSheetRows)
                        return SheetReadStatus::NotReadable;
                } else {
                    number = row + 1;
                    if (number > kMaxSheetRows) return SheetReadStatus::NotReadable;
                }
                row = number;
                nextColumn = 0;
            } else if (name == "c") {
                std::string_view ref;
                if (FindAttribute(xml.attrs, "r", ref)) {
                    if (!ParseCellReference(ref, cellColumn, cellRow))
                        return SheetReadStatus::NotReadable;
                } else {
                    if (nextColumn >= kMaxSheetColumns) return SheetReadStatus::NotReadable;
                    cellColumn = nextColumn;
                    cellRow = row == 0 ? 0 : row - 1;
                }
                nextColumn = cellColumn + 1;
                if (cellRow + 1 > extent.usedRows) extent.usedRows = cellRow + 1;
                wanted = request.Wants(cellColumn);
                if (!wanted || xml.selfClosing) {
                    if (wanted) sink.Cell(cellColumn, cellRow, CellKind::Empty, 0.0, {});
                    wanted = false;
                    inCell = !xml.selfClosing;
                    continue;
                }
                inCell = true;
                std::string_view t, s;
                type = FindAttribute(xml.attrs, "t", t) ? std::string(t) : std::string("n");
                uint32_t style = 0;
                isDate = FindAttribute(xml.attrs, "s", s) && ParseUnsigned(s, style) &&
                         style < dateStyles.size() && dateStyles[style];
                value.clear();
                valueChars = 0;
            } else if (inCell && wanted && !xml.selfClosing) {
                if (name == "v")
                    inValue = true;
                else if (name == "is")
                    inInline = true;
                else if (name == "t")
                    inText = true;
                else if (name == "rPh")
                    ++phonetic;
            }
            continue;
        }
        // End tags.
        if (name == "v")
            inValue = false;
        else if (name == "is")
            inInline = false;
        else if (name == "t")
            inText = false;
        else if (name == "rPh")
            --phonetic;
        else if (name == "c" && inCell) {
            inCell = false;
            if (!wanted) continue;
            wanted = false;
            if (type == "s") {
                uint32_t index = 0;
                if (ParseUnsigned(value, index) && index < strings.Count())
                    sink.Cell(cellColumn, cellRow, CellKind::Text, 0.0, strings.At(index));
                else
                    sink.Cell(cellColumn, cellRow, CellKind::Empty, 0.0, {});
            } else if (type == "str" || type == "inlineStr") {
                const std::string text = DecodeOoxmlEscapes(value);
                sink.Cell(cellColumn, cellRow, CellKind::Text, 0.0, text);
            } else if (type == "n") {
                double number = 0.0;
                const auto r = std::from_chars(value.data(), value.data() + value.size(), number);
                if (value.empty())
                    sink.Cell(cellColumn, cellRow, CellKind::Empty, 0.0, {});
                else if (r.ec != std::errc() || isDate)
                    sink.Cell(cellColumn, cellRow, CellKind::Other, 0.0, {});
                else
                    sink.Cell(cellColumn, cellRow, CellKind::Number, number, {});
            } else {
                sink.Cell(cellColumn, cellRow, CellKind::Other, 0.0, {});  // boolean, error, date
            }
        }
    }
}
}  // namespace

bool LooksLikeZip(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    unsigned char head[4] = {};
    const size_t n = std::fread(head, 1, sizeof head, file);
    std::fclose(file);
    return n == 4 && head[0] == 'P' && head[1] == 'K' && head[2] == 3 && head[3] == 4;
}

SheetReadStatus ReadOpenXmlSheet(const std::string& path, const SheetRequest& request,
                                 CSheetCellSink& sink, SheetExtent& extent) {
    int error = 0;
    ZipPtr zip(zip_open(path.c_str(), ZIP_RDONLY, &error));
    if (!zip)
        return error == ZIP_ER_MEMORY ? SheetReadStatus::CannotStart : SheetReadStatus::NotReadable;

    // The package's main part, then its active sheet.
    std::string workbookPart = LoadRelationships(zip.get(), "").TargetOfType("/officeDocument");
    if (workbookPart.empty()) workbookPart = "xl/workbook.xml";
    pugi::xml_document workbook;
    if (!LoadXmlPart(zip.get(), workbookPart, workbook)) return SheetReadStatus::NotReadable;
    const pugi::xml_node root = workbook.document_element();
    const unsigned activeTab = ChildByLocalName(ChildByLocalName(root, "bookViews"), "workbookView")
                                   .attribute("activeTab")
                                   .as_uint(0);
    pugi::xml_node sheet;
    unsigned index = 0;
    for (pugi::xml_node candidate : ChildByLocalName(root, "sheets").children()) {
        if (LocalName(candidate.name()) != "sheet") continue;
        if (index++ == activeTab) {
            sheet = candidate;
            break;
        }
    }
    if (!sheet) return SheetReadStatus::NotReadable;
    std::string relId;
    for (pugi::xml_attribute attr : sheet.attributes())
        if (LocalName(attr.name()) == "id") relId = attr.value();
    const Relationships rels = LoadRelationships(zip.get(), workbookPart);
    const std::string sheetPart = rels.TargetOfId(relId);
    if (sheetPart.empty()) return SheetReadStatus::NotReadable;

    SharedStrings strings;
    if (!strings.Load(zip.get(), rels.TargetOfType("/sharedStrings")))
        return SheetReadStatus::NotReadable;
    std::vector<bool> dateStyles;
    if (!LoadDateStyles(zip.get(), rels.TargetOfType("/styles"), dateStyles))
        return SheetReadStatus::NotReadable;
    return ScanSheet(zip.get(), sheetPart, strings, dateStyles, request, sink, extent);
}

std::string ReadOpenXmlCustomProperty(const std::string& path, const std::string& name) {
    int error = 0;
    ZipPtr zip(zip_open(path.c_str(), ZIP_RDONLY, &error));
    pugi::xml_document properties;
    if (!zip || !LoadXmlPart(zip.get(), "docProps/custom.xml", properties)) return {};
    for (pugi::xml_node property : properties.document_element().children()) {
        if (LocalName(property.name()) != "property" || name != property.attribute("name").value())
            continue;
        // The value is the one child element, typed by its tag (vt:i4, vt:lpwstr, ...).
        return property.first_child().text().get();
    }
    return {};
}
