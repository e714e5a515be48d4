#include "framework/zeb_xml.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <optional>
#include <pugixml.hpp>
#include <sstream>
#include <thread>
#include <utility>

#include "framework/file_beside.h"
#include "framework/hand_off.h"
#include "framework/text_convert.h"
#include "framework/thread_start.h"

namespace {
// Detached elements live under this holder, a sibling of the document element, so that moving
// them into the tree later keeps every handle valid. It is never written out.
const char kHolderName[] = "zeb.detached";

pugi::xml_node Wrap(pugi::xml_node_struct* n) { return pugi::xml_node(n); }

// Whether the name `text` (as the document holds it) is `name`; inline, as it runs for every
// child and attribute of a large table.
bool IsName(const char* text, std::string_view name) {
    for (char c : name)
        if (*text++ != c) return false;
    return *text == '\0';
}

bool IsPlainName(const std::string& name) {
    if (name.empty()) return false;
    for (unsigned char c : name) {
        if (!(std::isalnum(c) || c == '_' || c == '-' || c == '.' || c >= 0x80)) return false;
    }
    return true;
}

std::vector<pugi::xml_node_struct*> Select(pugi::xml_node node, const std::wstring& name,
                                           bool firstOnly) {
    std::vector<pugi::xml_node_struct*> out;
    if (!node) return out;
    const std::string utf8 = ToUtf8(name);
    if (IsPlainName(utf8)) {
        for (pugi::xml_node child = node.child(utf8.c_str()); child;
             child = child.next_sibling(utf8.c_str())) {
            out.push_back(child.internal_object());
            if (firstOnly) break;
        }
        return out;
    }
    try {
        pugi::xpath_node_set set = node.select_nodes(utf8.c_str());
        for (const pugi::xpath_node& x : set) {
            if (x.node() && x.node().type() == pugi::node_element) {
                out.push_back(x.node().internal_object());
                if (firstOnly) break;
            }
        }
    } catch (const pugi::xpath_exception&) {
        out.clear();
    }
    return out;
}

void LineAndColumn(const char* text, size_t size, ptrdiff_t offset, long& line, long& column) {
    line = 1;
    column = 1;
    for (ptrdiff_t i = 0; i < offset && static_cast<size_t>(i) < size; ++i) {
        if (text[i] == '\n') {
            ++line;
            column = 1;
        } else if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) {
            ++column;
        }
    }
}

struct StringWriter : pugi::xml_writer {
    std::string out;
    void write(const void* data, size_t size) override {
        out.append(static_cast<const char*>(data), size);
    }
};

// A large buffer about to be filled is backed by huge pages where the system offers them on
// request: one page fault per 2 MiB instead of one per 4 KiB. Nothing changes where it does not.
void AskForHugePages(void* buffer, size_t size) {
    const size_t page = static_cast<size_t>(::sysconf(_SC_PAGESIZE));
    const uintptr_t start = (reinterpret_cast<uintptr_t>(buffer) + page - 1) / page * page;
    const uintptr_t end = (reinterpret_cast<uintptr_t>(buffer) + size) / page * page;
    if (end > start) ::madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

// Writes to an open file in blocks; after the first failure it writes nothing more and keeps
// errno. Once there is more than one block, a thread of its own writes each full block while the
// document prints into the next, and hands it to the disk as it goes, so the fsync that ends a
// save waits for the last block only.
class FileWriter : public pugi::xml_writer {
public:
    explicit FileWriter(int fd) : m_fd(fd) { m_filling.reserve(kBlock); }
    ~FileWriter() override { Stop(); }
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    void write(const void* data, size_t size) override {
        if (!m_filling.empty() && m_filling.size() + size > kBlock) HandOver();
        const char* bytes = static_cast<const char*>(data);
        m_filling.insert(m_filling.end(), bytes, bytes + size);
    }
    // True when everything was written; errno is the failure's otherwise.
    bool Complete() {
        if (m_writer.joinable()) HandOver();
        Stop();
        WriteOut(m_filling);  // nothing left here when the writer took it
        m_filling.clear();
        if (!m_ok) errno = m_errno;
        return m_ok;
    }

private:
    static constexpr size_t kBlock = 1024 * 1024;
    static constexpr size_t kQueuedBlocks = 2;

    void HandOver() {
        if (!m_writer.joinable()) {
            try {
                m_writer = ZebStartThread([this] {
                    while (std::optional<std::vector<char>> block = m_blocks.Take())
                        WriteOut(*block);
                });
            } catch (...) {
                // No thread to be had (or no memory for one): written here instead.
                WriteOut(m_filling);
                m_filling.clear();
                return;
            }
        }
        m_blocks.Give(std::exchange(m_filling, {}));
        m_filling.reserve(kBlock);
    }
    void Stop() {
        if (!m_writer.joinable()) return;
        m_blocks.Close();
        m_writer.join();
    }
    void WriteOut(const std::vector<char>& block) {
        const char* bytes = block.data();
        size_t size = block.size();
        const off_t start = m_written;
        while (m_ok && size > 0) {
            const ssize_t n = ::write(m_fd, bytes, size);
            if (n < 0) {
                if (errno == EINTR) continue;
                m_ok = false;
                m_errno = errno;
                break;
            }
            bytes += n;
            size -= static_cast<size_t>(n);
            m_written += n;
        }
        // Only a head start for the fsync: where it is not supported, fsync does it all.
        if (m_ok && m_written > start)
            ::sync_file_range(m_fd, start, m_written - start, SYNC_FILE_RANGE_WRITE);
    }

    int m_fd;
    std::vector<char> m_filling;
    ZebHandOff<std::vector<char>> m_blocks{kQueuedBlocks};
    std::jthread m_writer;
    // Written by the writer while it runs, read here once it has ended.
    off_t m_written = 0;
    bool m_ok = true;
    int m_errno = 0;
};
}  // namespace

struct ZebXMLDocument::Impl {
    pugi::xml_document doc;
    pugi::xml_node holder;

    pugi::xml_node Holder() {
        if (!holder) holder = doc.append_child(kHolderName);
        return holder;
    }
    bool IsTop(pugi::xml_node parent) const {
        return !parent || parent.type() == pugi::node_document || parent == holder;
    }
    // The document as written: the declaration, then every top node but the holder.
    void Print(pugi::xml_writer& writer) const;
    pugi::xml_node DocumentElement() const {
        for (pugi::xml_node n = doc.first_child(); n; n = n.next_sibling())
            if (n.type() == pugi::node_element && n != holder) return n;
        return {};
    }
    bool Parse(const char* text, size_t size, std::wstring& error) {
        holder = pugi::xml_node();
        pugi::xml_parse_result result = doc.load_buffer(
            text, size, pugi::parse_default | pugi::parse_comments, pugi::encoding_utf8);
        if (result) {
            if (!DocumentElement()) {
                doc.reset();
                error = L"no document element found";
                return false;
            }
            return true;
        }
        long line = 0, column = 0;
        LineAndColumn(text, size, result.offset, line, column);
        error = L"line " + std::to_wstring(line) + L", column " + std::to_wstring(column) + L": " +
                FromUtf8(result.description());
        doc.reset();
        return false;
    }
};

// ---- ZebXMLNode

std::wstring ZebXMLNode::GetName() const { return FromUtf8(Wrap(m_node).name()); }

bool ZebXMLNode::AddAttribute(const std::wstring& name, const std::wstring& value) {
    return AddAttribute1(ToUtf8(name).c_str(), ToUtf8(value).c_str());
}

bool ZebXMLNode::AddAttribute1(const char* name, const char* value) {
    pugi::xml_node n = Wrap(m_node);
    if (!n || !name || !*name) return false;
    pugi::xml_attribute a = n.attribute(name);
    if (!a) a = n.append_attribute(name);
    return a.set_value(value ? value : "");
}

namespace {
// Text is parsed in batches of this size, so that pending text never grows with the table.
constexpr size_t kAppendBatch = 256 * 1024;
// Written batches that wait to be parsed, at most.
constexpr size_t kQueuedBatches = 2;
// Fewer elements are written and parsed on one thread: a second would cost more than it saves.
constexpr size_t kPipelinedElements = 10000;

// The most bytes one character of an attribute value takes escaped: "&quot;".
constexpr size_t kMaxEscaped = 6;

// How each ASCII character goes into a double-quoted attribute value: 0 as it is, 1 as the
// reference in kEscapes, 2 as a numeric character reference (a control character: raw, the
// parser would turn tabs and line ends into spaces), 3 not at all (L'\0' ends the value, as an
// attribute can carry no more).
struct AttributeEscapes {
    unsigned char how[0x80] = {};
    const char* text[0x80] = {};
    constexpr AttributeEscapes() {
        for (int c = 0; c < 0x20; ++c) how[c] = 2;
        how[0] = 3;
        for (const auto& [c, reference] : {std::pair{'&', "&amp;"}, std::pair{'<', "&lt;"},
                                           std::pair{'>', "&gt;"}, std::pair{'"', "&quot;"}}) {
            how[static_cast<unsigned char>(c)] = 1;
            text[static_cast<unsigned char>(c)] = reference;
        }
    }
};
constexpr AttributeEscapes kEscapes;

// `value` up to its first L'\0' as the text of an attribute value in double quotes, in UTF-8, at
// `out`, which has room for kMaxEscaped bytes a character; returns the end.
char* WriteEscapedAttribute(std::wstring_view value, char* out) {
    for (wchar_t w : value) {
        const char32_t c = static_cast<char32_t>(w);
        if (c >= 0x80) {
            out = WriteUtf8(c, out);
            continue;
        }
        switch (kEscapes.how[c]) {
            case 0:
                *out++ = static_cast<char>(c);
                break;
            case 1:
                for (const char* e = kEscapes.text[c]; *e; ++e) *out++ = *e;
                break;
            case 2:
                *out++ = '&';
                *out++ = '#';
                if (c >= 10) *out++ = static_cast<char>('0' + c / 10);
                *out++ = static_cast<char>('0' + c % 10);
                *out++ = ';';
                break;
            default:
                return out;
        }
    }
    return out;
}

}  // namespace

ZebXMLElementText::ZebXMLElementText(const char* name)
    : m_name(name), m_nameLength(std::strlen(name)) {}

char* ZebXMLElementText::Room(size_t bytes) {
    if (m_used + bytes > m_capacity) {
        const size_t capacity =
            std::max({m_capacity * 2, m_used + bytes, kAppendBatch + kAppendBatch / 4});
        std::unique_ptr<char[]> grown(new char[capacity]);
        if (m_used) std::memcpy(grown.get(), m_text.get(), m_used);
        m_text = std::move(grown);
        m_capacity = capacity;
    }
    return m_text.get() + m_used;
}

void ZebXMLElementText::BeginElement() {
    char* out = Room(1 + m_nameLength);
    *out++ = '<';
    std::memcpy(out, m_name, m_nameLength);
    m_used += 1 + m_nameLength;
}

void ZebXMLElementText::Attribute(std::string_view name, std::wstring_view value) {
    char* const start = Room(name.size() + 4 + value.size() * kMaxEscaped);
    char* out = start;
    *out++ = ' ';
    out = std::copy(name.begin(), name.end(), out);
    *out++ = '=';
    *out++ = '"';
    out = WriteEscapedAttribute(value, out);
    *out++ = '"';
    m_used += static_cast<size_t>(out - start);
}

void ZebXMLElementText::EndElement() {
    std::memcpy(Room(2), "/>", 2);
    m_used += 2;
}

bool ZebXMLNode::AppendElements1(
    const char* name, size_t count,
    const std::function<void(size_t index, ZebXMLElementText& text)>& write) {
    bool ok = true;
    const auto parse = [&](const ZebXMLElementText& batch) {
        if (batch.Size() == 0) return;
        ok = Wrap(m_node).append_buffer(batch.Data(), batch.Size(), pugi::parse_default,
                                        pugi::encoding_utf8) &&
             ok;
    };
    // Writes elements [0, count) in batches, handing each full one to `full`.
    const auto writeAll = [&](const std::function<void(ZebXMLElementText &&)>& full) {
        ZebXMLElementText batch(name);
        for (size_t i = 0; i < count; ++i) {
            write(i, batch);
            if (batch.Size() >= kAppendBatch) full(std::exchange(batch, ZebXMLElementText(name)));
        }
        full(std::move(batch));
    };
    ZebHandOff<ZebXMLElementText> queue(kQueuedBatches);
    // When parsing here fails, the writer is told to stop before it is joined.
    struct Writer {
        ZebHandOff<ZebXMLElementText>& queue;
        std::jthread thread;
        ~Writer() {
            if (!thread.joinable()) return;
            queue.LetGo();
            thread.join();
        }
    } writer{queue, {}};
    if (count >= kPipelinedElements) {
        try {
            writer.thread = ZebStartThread([&] {
                struct LetGo {};
                try {
                    writeAll([&](ZebXMLElementText&& batch) {
                        if (!queue.Give(std::move(batch))) throw LetGo{};
                    });
                    queue.Close();
                } catch (const LetGo&) {
                } catch (...) {
                    queue.Close(std::current_exception());
                }
            });
        } catch (...) {
            // No thread to be had (or no memory for one): written here.
        }
    }
    if (!writer.thread.joinable()) {
        writeAll([&](ZebXMLElementText&& batch) { parse(batch); });
        return ok;
    }
    while (std::optional<ZebXMLElementText> batch = queue.Take()) parse(*batch);
    writer.thread.join();
    if (std::exception_ptr error = queue.Error()) std::rethrow_exception(error);
    return ok;
}

bool ZebXMLNode::GetAttributeValue(const std::wstring& name, std::wstring& value) const {
    return GetAttributeValue1(ToUtf8(name).c_str(), value);
}

bool ZebXMLNode::GetAttributeValue1(const char* name, std::wstring& value) const {
    pugi::xml_attribute a = Wrap(m_node).attribute(name);
    if (!a) return false;
    value = FromUtf8(a.value());
    return true;
}

void ZebXMLNode::GetAttributeTexts1(const std::string_view* names, size_t count,
                                    const char** texts) const {
    std::fill(texts, texts + count, nullptr);
    // Attributes mostly come in the order asked for: the name after the last one found is tried
    // first, so a row of cells costs one comparison per attribute.
    size_t next = 0;
    for (pugi::xml_attribute a : Wrap(m_node).attributes()) {
        const char* name = a.name();
        for (size_t k = 0; k < count; ++k) {
            const size_t i = next + k < count ? next + k : next + k - count;
            // The first attribute of a name counts, as a lookup by name finds it.
            if (!texts[i] && IsName(name, names[i])) {
                texts[i] = a.value();
                next = i + 1;
                break;
            }
        }
    }
}

std::vector<std::pair<std::wstring, std::wstring>> ZebXMLNode::GetAttributes() const {
    std::vector<std::pair<std::wstring, std::wstring>> out;
    for (pugi::xml_attribute a : Wrap(m_node).attributes())
        out.emplace_back(FromUtf8(a.name()), FromUtf8(a.value()));
    return out;
}

ZebXMLNode* ZebXMLNode::AppendNode(const std::wstring& name) {
    pugi::xml_node child = Wrap(m_node).append_child(ToUtf8(name).c_str());
    return child ? new ZebXMLNode(m_doc, child.internal_object()) : nullptr;
}

bool ZebXMLNode::AppendNode(ZebXMLNode* child) {
    if (!child || !child->m_node || !m_node) return false;
    pugi::xml_node self = Wrap(m_node);
    pugi::xml_node other = Wrap(child->m_node);
    if (child->m_doc == m_doc) {
        for (pugi::xml_node p = self; p; p = p.parent())
            if (p == other) return false;  // would move an element into itself
        return static_cast<bool>(self.append_move(other));
    }
    return static_cast<bool>(self.append_copy(other));
}

bool ZebXMLNode::RemoveChild(ZebXMLNode* child) {
    if (!child) return false;
    return Wrap(m_node).remove_child(Wrap(child->m_node));
}

bool ZebXMLNode::ReplaceChild(ZebXMLNode* newChild, ZebXMLNode* oldChild) {
    if (!newChild || !oldChild || newChild->m_doc != m_doc) return false;
    pugi::xml_node self = Wrap(m_node);
    pugi::xml_node old = Wrap(oldChild->m_node);
    if (old.parent() != self) return false;
    for (pugi::xml_node p = self; p; p = p.parent())
        if (p == Wrap(newChild->m_node)) return false;  // would move an element into itself
    return self.insert_move_before(Wrap(newChild->m_node), old) && self.remove_child(old);
}

void ZebXMLNode::SetNodeValue(const std::wstring& text) {
    pugi::xml_node n = Wrap(m_node);
    while (pugi::xml_node c = n.first_child()) {
        if (c.type() != pugi::node_pcdata && c.type() != pugi::node_cdata) break;
        n.remove_child(c);
    }
    // No empty text node: an element reads back as it was written, so a document read and
    // written again keeps every element it did not change as it was.
    if (!text.empty()) n.text().set(ToUtf8(text).c_str());
}

std::wstring ZebXMLNode::GetNodeValue() const { return FromUtf8(Wrap(m_node).text().get()); }

bool ZebXMLNode::GetNodeValueInInt(int& value) const {
    const char* s = Wrap(m_node).text().get();
    while (*s == ' ' || *s == '\t' || *s == '\n' || *s == '\r') ++s;
    char* end = nullptr;
    errno = 0;
    const long v = std::strtol(s, &end, 10);
    if (end == s) return false;
    value = static_cast<int>(v);
    return true;
}

ZebXMLNode* ZebXMLNode::SelectSingleNode(const std::wstring& name) const {
    auto found = Select(Wrap(m_node), name, true);
    return found.empty() ? nullptr : new ZebXMLNode(m_doc, found.front());
}

ZebXMLNodeList* ZebXMLNode::GetNodeList(const std::wstring& name) const {
    return new ZebXMLNodeList(m_doc, Select(Wrap(m_node), name, false));
}

ZebXMLNodeList* ZebXMLNode::GetChildElements() const {
    std::vector<pugi::xml_node_struct*> out;
    for (pugi::xml_node c : Wrap(m_node).children())
        if (c.type() == pugi::node_element) out.push_back(c.internal_object());
    return new ZebXMLNodeList(m_doc, std::move(out));
}

void ZebXMLNode::GetChildElementsByName1(const std::string_view* names, size_t count,
                                         std::vector<ZebXMLNode>* lists) const {
    for (pugi::xml_node c = Wrap(m_node).first_child(); c; c = c.next_sibling()) {
        const char* name = c.name();
        for (size_t i = 0; i < count; ++i) {
            if (IsName(name, names[i])) {
                // Declarations and processing instructions have names too; only elements count.
                if (c.type() == pugi::node_element)
                    lists[i].emplace_back(m_doc, c.internal_object());
                break;
            }
        }
    }
}

ZebXMLNode* ZebXMLNode::GetParentNode() const {
    pugi::xml_node parent = Wrap(m_node).parent();
    if (!parent || parent.type() != pugi::node_element) return nullptr;
    if (m_doc && m_doc->GetImpl()->IsTop(parent)) return nullptr;
    return new ZebXMLNode(m_doc, parent.internal_object());
}

// ---- ZebXMLNodeList

ZebXMLNode* ZebXMLNodeList::operator[](long index) const {
    if (index < 0 || index >= GetSize()) return nullptr;
    return new ZebXMLNode(m_doc, m_nodes[static_cast<size_t>(index)]);
}

// ---- ZebXMLDocument

ZebXMLDocument::ZebXMLDocument() : m_impl(std::make_unique<Impl>()) {}
ZebXMLDocument::~ZebXMLDocument() = default;

bool ZebXMLDocument::LoadFile(const std::wstring& path, std::wstring& error) {
    const auto fail = [&](std::wstring why) {
        error = std::move(why);
        m_impl->doc.reset();
        m_impl->holder = pugi::xml_node();
        return false;
    };
    std::ifstream in(ToUtf8(path), std::ios::binary | std::ios::ate);
    if (!in) return fail(L"cannot open " + path + L": " + FromUtf8(std::strerror(errno)));
    const std::streamoff size = in.tellg();
    if (size <= 0) return fail(L"the file is empty");
    // Read straight into a buffer the parser takes over and parses in place: a large document is
    // held once, not once per copy.
    void* buffer = pugi::get_memory_allocation_function()(static_cast<size_t>(size));
    if (!buffer) return fail(L"not enough memory to read " + path);
    AskForHugePages(buffer, static_cast<size_t>(size));
    in.seekg(0);
    if (!in.read(static_cast<char*>(buffer), size)) {
        pugi::get_memory_deallocation_function()(buffer);
        return fail(L"cannot read " + path + L": " + FromUtf8(std::strerror(errno)));
    }
    m_impl->holder = pugi::xml_node();
    const pugi::xml_parse_result result = m_impl->doc.load_buffer_inplace_own(
        buffer, static_cast<size_t>(size), pugi::parse_default | pugi::parse_comments,
        pugi::encoding_utf8);
    if (result && m_impl->DocumentElement()) return true;
    // Parsing in place changed the text; the error's line and column come from the file as it is.
    std::ifstream again(ToUtf8(path), std::ios::binary);
    std::ostringstream text;
    text << again.rdbuf();
    const std::string original = text.str();
    return m_impl->Parse(original.data(), original.size(), error);
}

bool ZebXMLDocument::LoadXML(const std::string& utf8Text, std::wstring& error) {
    return m_impl->Parse(utf8Text.data(), utf8Text.size(), error);
}

void ZebXMLDocument::Impl::Print(pugi::xml_writer& writer) const {
    static const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    writer.write(kDeclaration, sizeof kDeclaration - 1);
    for (pugi::xml_node n = doc.first_child(); n; n = n.next_sibling()) {
        if (n == holder || n.type() == pugi::node_declaration) continue;
        n.print(writer, "  ", pugi::format_default, pugi::encoding_utf8);
    }
}

std::string ZebXMLDocument::GetXML() const {
    StringWriter writer;
    m_impl->Print(writer);
    return writer.out;
}

void ZebXMLDocument::Clear() {
    m_impl->doc.reset();
    m_impl->holder = pugi::xml_node();
}

bool ZebXMLDocument::SaveFile(const std::wstring& path, std::wstring& error) const {
    // A link to an existing file is written through: the file it names is replaced in its own
    // folder and the link stays, as an editor would keep it.
    std::string target = ToUtf8(path);
    struct stat link {};
    if (::lstat(target.c_str(), &link) == 0 && S_ISLNK(link.st_mode)) {
        if (char* resolved = ::realpath(target.c_str(), nullptr)) {
            target = resolved;
            std::free(resolved);
        }
    }
    // A replaced file keeps its mode and, where allowed, its owner; a new one gets the mode the
    // umask leaves of 0666, as any other new file would.
    struct stat old {};
    const bool replacing = ::stat(target.c_str(), &old) == 0 && S_ISREG(old.st_mode);
    std::string temp;
    // Until its mode is set, a replacing file is readable by its owner only.
    const int fd = ZebOpenFileBeside(target, replacing ? 0600 : 0666, temp);
    if (fd < 0) {
        error = L"cannot write beside " + path + L": " + FromUtf8(std::strerror(errno));
        return false;
    }
    if (replacing) {
        // Only root can give the file the old owner; others keep the old group when they belong
        // to it. Group bits are not handed to another group, and the file stays readable by its
        // writer only should the mode not take.
        const bool sameGroup = ::fchown(fd, old.st_uid, old.st_gid) == 0 ||
                               ::fchown(fd, static_cast<uid_t>(-1), old.st_gid) == 0;
        ::fchmod(fd, old.st_mode & (sameGroup ? 0777 : 0707));
    }
    // Written as it is printed, so that the text of a large document is never held whole.
    FileWriter writer(fd);
    m_impl->Print(writer);
    const bool complete = writer.Complete() && ::fsync(fd) == 0;
    const int savedErrno = errno;
    ::close(fd);
    if (!complete || std::rename(temp.c_str(), target.c_str()) != 0) {
        error = L"cannot write " + path + L": " +
                FromUtf8(std::strerror(complete ? errno : savedErrno));
        ::unlink(temp.c_str());
        return false;
    }
    return true;
}

ZebXMLNode* ZebXMLDocument::CreateNode(const std::wstring& name) {
    pugi::xml_node n = m_impl->Holder().append_child(ToUtf8(name).c_str());
    return n ? new ZebXMLNode(this, n.internal_object()) : nullptr;
}

ZebXMLNode* ZebXMLDocument::GetDocumentElement() {
    pugi::xml_node n = m_impl->DocumentElement();
    return n ? new ZebXMLNode(this, n.internal_object()) : nullptr;
}

ZebXMLNode* ZebXMLDocument::CreateDocumentElement(const std::wstring& name) {
    if (pugi::xml_node old = m_impl->DocumentElement()) m_impl->doc.remove_child(old);
    pugi::xml_node n = m_impl->holder
                           ? m_impl->doc.insert_child_before(ToUtf8(name).c_str(), m_impl->holder)
                           : m_impl->doc.append_child(ToUtf8(name).c_str());
    return n ? new ZebXMLNode(this, n.internal_object()) : nullptr;
}

ZebXMLNodeList* ZebXMLDocument::GetElementsByTagName(const std::wstring& name) {
    std::vector<pugi::xml_node_struct*> out;
    const std::string utf8 = ToUtf8(name);
    pugi::xml_node root = m_impl->DocumentElement();
    struct Walker : pugi::xml_tree_walker {
        const std::string* name;
        std::vector<pugi::xml_node_struct*>* out;
        bool for_each(pugi::xml_node& n) override {
            if (n.type() == pugi::node_element && *name == n.name())
                out->push_back(n.internal_object());
            return true;
        }
    } walker;
    walker.name = &utf8;
    walker.out = &out;
    if (root) {
        if (utf8 == root.name()) out.push_back(root.internal_object());
        root.traverse(walker);
    }
    return new ZebXMLNodeList(this, std::move(out));
}
