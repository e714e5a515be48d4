#include "pg_statement.h"

#include <cctype>
#include <charconv>
#include <vector>

#include "framework/text_convert.h"

namespace zeb_db {
namespace {

std::string Trimmed(std::string text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
    return text;
}

// Throws for anything but a successful result; a null result means the connection failed.
PgResult Checked(PGconn* conn, PGresult* raw) {
    PgResult result(raw);
    const ExecStatusType status = raw ? PQresultStatus(raw) : PGRES_FATAL_ERROR;
    if (status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) return result;
    const char* state = raw ? PQresultErrorField(raw, PG_DIAG_SQLSTATE) : nullptr;
    std::string message = raw ? PQresultErrorMessage(raw) : "";
    if (Trimmed(message).empty()) message = PQerrorMessage(conn);
    if (Trimmed(message).empty()) message = "the server gave no answer";
    throw PgError(Trimmed(message), state ? state : "");
}

}  // namespace

PgParam::PgParam(const std::wstring& text) : text_(ToUtf8(text)) {}

PgParam::PgParam(int64_t value) : text_(std::to_string(value)) {}

PgParam::PgParam(double value) {
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    text_.assign(buffer, end);
}

int64_t PgResult::Affected() const {
    const char* count = PQcmdTuples(result_.get());
    int64_t value = 0;
    std::from_chars(count, count + std::char_traits<char>::length(count), value);
    return value;
}

std::wstring PgResult::Text(int row, int column) const {
    const PGresult* r = result_.get();
    return FromUtf8(std::string_view(PQgetvalue(r, row, column), PQgetlength(r, row, column)));
}

int64_t PgResult::Int(int row, int column) const {
    const char* text = PQgetvalue(result_.get(), row, column);
    int64_t value = 0;
    std::from_chars(text, text + PQgetlength(result_.get(), row, column), value);
    return value;
}

double PgResult::Real(int row, int column) const {
    const char* text = PQgetvalue(result_.get(), row, column);
    double value = 0.0;
    std::from_chars(text, text + PQgetlength(result_.get(), row, column), value);
    return value;
}

PgResult Exec(PGconn* conn, const char* sql, std::initializer_list<PgParam> params) {
    std::vector<std::string> texts;
    texts.reserve(params.size());
    for (const PgParam& p : params) texts.push_back(p.Text());
    return Exec(conn, sql, texts);
}

PgResult Exec(PGconn* conn, const char* sql, const std::vector<std::string>& params) {
    std::vector<const char*> values;
    values.reserve(params.size());
    for (const std::string& p : params) values.push_back(p.c_str());
    return Checked(conn, PQexecParams(conn, sql, static_cast<int>(values.size()), nullptr,
                                      values.data(), nullptr, nullptr, 0));
}

void ExecScript(PGconn* conn, const char* sql) { Checked(conn, PQexec(conn, sql)); }

std::string WithoutPassword(const std::string& conninfo) {
    std::string text = conninfo;
    const bool uri = text.rfind("postgresql://", 0) == 0 || text.rfind("postgres://", 0) == 0;
    if (uri) {
        // Drop the password of user:password@ in the authority part.
        const size_t start = text.find("://") + 3;
        const size_t end = text.find_first_of("/?", start);
        const std::string authority =
            text.substr(start, end == std::string::npos ? end : end - start);
        const size_t at = authority.rfind('@');
        if (at != std::string::npos) {
            const size_t colon = authority.find(':');
            if (colon != std::string::npos && colon < at) text.erase(start + colon, at - colon);
        }
        // Drop password=... among the query parameters.
        const size_t query = text.find('?');
        if (query == std::string::npos) return text;
        std::string kept;
        size_t pos = query + 1;
        while (pos <= text.size()) {
            size_t amp = text.find('&', pos);
            if (amp == std::string::npos) amp = text.size();
            const std::string pair = text.substr(pos, amp - pos);
            if (pair.rfind("password=", 0) != 0 && !pair.empty())
                kept += (kept.empty() ? "" : "&") + pair;
            pos = amp + 1;
        }
        return text.substr(0, query) + (kept.empty() ? "" : "?" + kept);
    }
    // key = value pairs; a value may be quoted with '...' and hold \' or \\.
    std::string kept;
    size_t pos = 0;
    while (pos < text.size()) {
        while (pos < text.size() && std::isspace(static_cast<unsigned char>(text[pos]))) ++pos;
        if (pos >= text.size()) break;
        const size_t keyStart = pos;
        while (pos < text.size() && text[pos] != '=' &&
               !std::isspace(static_cast<unsigned char>(text[pos])))
            ++pos;
        const std::string key = text.substr(keyStart, pos - keyStart);
        while (pos < text.size() && std::isspace(static_cast<unsigned char>(text[pos]))) ++pos;
        if (pos < text.size() && text[pos] == '=') ++pos;
        while (pos < text.size() && std::isspace(static_cast<unsigned char>(text[pos]))) ++pos;
        const size_t valueStart = pos;
        if (pos < text.size() && text[pos] == '\'') {
            for (++pos; pos < text.size() && text[pos] != '\''; ++pos)
                if (text[pos] == '\\') ++pos;
            ++pos;
        } else {
            while (pos < text.size() && !std::isspace(static_cast<unsigned char>(text[pos]))) ++pos;
        }
        if (key != "password")
            kept += (kept.empty() ? "" : " ") + key + "=" +
                    text.substr(valueStart, std::min(pos, text.size()) - valueStart);
    }
    return kept;
}

}  // namespace zeb_db
