// Turns a string table (UTF-8 lines "id<TAB>text") into the C++ source of a resource library.
// With --ids the table's lines carry a name between id and text ("id<TAB>NAME<TAB>text") and a
// header declaring each name as its id is written too, so that code names every string it loads.
// Fails the build on a malformed line, a bad escape, a repeated id or a repeated name.
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

namespace {
bool DecodeUtf8(const std::string& s, std::u32string& out) {
    for (size_t i = 0; i < s.size();) {
        const unsigned char b = static_cast<unsigned char>(s[i]);
        int extra = b < 0x80             ? 0
                    : (b & 0xE0) == 0xC0 ? 1
                    : (b & 0xF0) == 0xE0 ? 2
                    : (b & 0xF8) == 0xF0 ? 3
                                         : -1;
        if (extra < 0 || i + extra >= s.size() + (extra == 0)) return false;
        char32_t c = extra == 0 ? b : (b & (0x3F >> extra));
        for (int k = 1; k <= extra; ++k) {
            if (i + k >= s.size() || (static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80)
                return false;
            c = (c << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
        }
        out += c;
        i += extra + 1;
    }
    return true;
}

bool IsName(const std::string& name) {
    if (name.empty() || !(name[0] >= 'A' && name[0] <= 'Z')) return false;
    for (char c : name)
        if (!((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_')) return false;
    return true;
}

// The header of named ids, rewritten only when its text changes so that a new text in the table
// does not rebuild every file that names a string.
bool WriteIds(const std::string& path, const char* table,
              const std::map<std::string, unsigned>& names) {
    std::ostringstream out;
    out << "// generated from " << table << "; do not edit\n#pragma once\n\n"
        << "// The module's string resources by name. The module's loading functions take a "
           "ZebStringId,\n"
        << "// so a string that is not in the table, or a bare number, does not compile.\n"
        << "enum ZebStringId : unsigned {\n";
    for (const auto& [name, id] : names) out << "    " << name << " = " << id << ",\n";
    out << "};\n";
    std::ifstream old(path);
    std::ostringstream oldText;
    oldText << old.rdbuf();
    if (old && oldText.str() == out.str()) return true;
    std::ofstream file(path);
    file << out.str();
    return static_cast<bool>(file);
}

std::string Literal(const std::u32string& text) {
    std::string out = "L\"";
    for (char32_t c : text) {
        if (c == U'"')
            out += "\\\"";
        else if (c == U'\\')
            out += "\\\\";
        else if (c == U'\n')
            out += "\\n";
        else if (c == U'\t')
            out += "\\t";
        else if (c >= 0x20 && c < 0x7F)
            out += static_cast<char>(c);
        else {
            char buf[16];
            std::snprintf(buf, sizeof buf, "\\U%08X", static_cast<unsigned>(c));
            out += buf;
        }
    }
    return out + "\"";
}
}  // namespace

int main(int argc, char** argv) {
    std::string idsHeader;
    if (argc == 5 && std::string(argv[1]) == "--ids") {
        idsHeader = argv[2];
        argv += 2;
        argc -= 2;
    }
    if (argc != 3) {
        std::cerr << "usage: resgen [--ids OUT.h] TABLE.tsv OUT.cpp\n";
        return 2;
    }
    std::ifstream in(argv[1]);
    if (!in) {
        std::cerr << argv[1] << ": cannot open\n";
        return 1;
    }
    std::map<unsigned, std::u32string> table;
    std::map<std::string, unsigned> names;
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        const size_t tab = line.find('\t');
        const std::string idText = line.substr(0, tab);
        if (tab == std::string::npos || idText.empty() ||
            idText.find_first_not_of("0123456789") != std::string::npos) {
            std::cerr << argv[1] << ":" << number << ": expected id, tab, text\n";
            return 1;
        }
        std::string raw = line.substr(tab + 1), text;
        std::string name;
        if (!idsHeader.empty()) {
            const size_t nameEnd = raw.find('\t');
            name = raw.substr(0, nameEnd);
            if (nameEnd == std::string::npos || !IsName(name)) {
                std::cerr << argv[1] << ":" << number << ": expected id, tab, NAME, tab, text\n";
                return 1;
            }
            raw = raw.substr(nameEnd + 1);
        }
        for (size_t i = 0; i < raw.size(); ++i) {
            if (raw[i] != '\\') {
                text += raw[i];
                continue;
            }
            const char e = i + 1 < raw.size() ? raw[++i] : '\0';
            if (e == 'n')
                text += '\n';
            else if (e == 't')
                text += '\t';
            else if (e == '\\')
                text += '\\';
            else {
                std::cerr << argv[1] << ":" << number << ": unknown escape\n";
                return 1;
            }
        }
        std::u32string decoded;
        if (!DecodeUtf8(text, decoded)) {
            std::cerr << argv[1] << ":" << number << ": not UTF-8\n";
            return 1;
        }
        const unsigned id = static_cast<unsigned>(std::stoul(idText));
        if (!table.emplace(id, decoded).second) {
            std::cerr << argv[1] << ":" << number << ": id " << id << " given twice\n";
            return 1;
        }
        if (!name.empty() && !names.emplace(name, id).second) {
            std::cerr << argv[1] << ":" << number << ": name " << name << " given twice\n";
            return 1;
        }
    }
    if (!idsHeader.empty() && !WriteIds(idsHeader, argv[1], names)) {
        std::cerr << idsHeader << ": cannot write\n";
        return 1;
    }
    std::ostringstream out;
    out << "// generated from " << argv[1] << "; do not edit\n"
        << "#include <algorithm>\n#include <iterator>\n\nnamespace {\n"
        << "struct Entry { unsigned id; const wchar_t* text; };\nconst Entry kStrings[] = {\n";
    for (const auto& [id, text] : table) out << "    {" << id << ", " << Literal(text) << "},\n";
    out << "};\nconst unsigned kIds[] = {";
    for (const auto& entry : table) out << entry.first << ", ";
    out << "};\n}  // namespace\n\n"
        << "extern \"C\" __attribute__((visibility(\"default\"))) const wchar_t* "
           "ZEBResString(unsigned id) {\n"
        << "    const Entry* end = kStrings + std::size(kStrings);\n"
        << "    const Entry* e = std::lower_bound(kStrings, end, id, [](const Entry& a, unsigned "
           "b) { return a.id < b; });\n"
        << "    return e != end && e->id == id ? e->text : nullptr;\n}\n\n"
        << "extern \"C\" __attribute__((visibility(\"default\"))) const unsigned* "
           "ZEBResStringIds(unsigned* count) {\n"
        << "    *count = static_cast<unsigned>(std::size(kIds));\n    return kIds;\n}\n";
    std::ofstream file(argv[2]);
    file << out.str();
    if (!file) {
        std::cerr << argv[2] << ": cannot write\n";
        return 1;
    }
    return 0;
}
