// vantor-rules db: the shared database for administrators and scripts.
#include <cstdio>
#include <list>
#include <string>
#include <vector>

#include "database/service/data_helper.h"
#include "database/service/db_copy.h"
#include "framework/text_convert.h"
#include "host/host_command.h"

namespace {

using Args = std::vector<std::string>;

void PrintLine(const std::wstring& text) { std::printf("%s\n", ToUtf8(text).c_str()); }

int Usage(const char* message) {
    std::fprintf(stderr, "vantor-rules db: %s (see vantor-rules --help)\n", message);
    return 2;
}

// Reports the service's answer to a change and turns it into the exit status.
int Outcome(int32_t result, const std::string& what) {
    switch (result) {
        case ZebDbOk:
            std::printf("%s: done\n", what.c_str());
            return 0;
        case ZebDbExists:
            std::printf("%s: already exists\n", what.c_str());
            return 1;
        default:
            std::printf("%s: refused by the database\n", what.c_str());
            return 1;
    }
}

int ReadFailed(const char* what) {
    std::fprintf(stderr, "vantor-rules db: the %s could not be read\n", what);
    return 2;
}

int PrintList(int32_t result, const std::list<std::wstring>& items, const char* what) {
    if (result != ZebDbOk) return ReadFailed(what);
    for (const std::wstring& item : items) PrintLine(item);
    return 0;
}

int Fasteners(IDatabaseCollector& db, const Args& args) {
    const std::string verb = args.size() > 1 ? args[1] : "";
    if (verb == "list" && args.size() == 2) {
        std::list<std::wstring> names;
        return PrintList(db.GetFastenerNames(names), names, "fastener names");
    }
    if (verb == "add" && args.size() == 3)
        return Outcome(db.AddFastenerName(FromUtf8(args[2])), "add " + args[2]);
    if (verb == "delete" && args.size() == 3)
        return Outcome(db.DeleteFastenerName(FromUtf8(args[2])), "delete " + args[2]);
    if (verb == "rename" && args.size() == 4)
        return Outcome(db.RenameFastenerName(FromUtf8(args[2]), FromUtf8(args[3])),
                       "rename " + args[2] + " to " + args[3]);
    return Usage("expected: db fasteners list|add NAME|rename OLD NEW|delete NAME");
}

int Materials(IDatabaseCollector& db, const Args& args) {
    const std::string verb = args.size() > 1 ? args[1] : "";
    if (verb == "list" && args.size() == 2) {
        ZebMaterialPairList pairs;
        if (db.GetMaterialPairs(pairs, 0) != ZebDbOk) return ReadFailed("materials");
        for (const auto& [group, material] : pairs) PrintLine(group + L"\t" + material);
        return 0;
    }
    if (verb == "add" && args.size() == 4)
        return Outcome(db.AddMaterial(FromUtf8(args[2]), FromUtf8(args[3]), 0),
                       "add " + args[3] + " to " + args[2]);
    if (verb == "delete" && args.size() == 4)
        return Outcome(db.DeleteMaterial(FromUtf8(args[2]), FromUtf8(args[3]), 0),
                       "delete " + args[3] + " from " + args[2]);
    return Usage("expected: db materials list|add GROUP MATERIAL|delete GROUP MATERIAL");
}

int Ignore(IDatabaseCollector& db, const Args& args) {
    const std::string verb = args.size() > 1 ? args[1] : "";
    if (verb == "list" && args.size() == 2) {
        std::list<std::wstring> names;
        return PrintList(db.GetInterferenceIgnoreList(names), names, "ignore list");
    }
    if (verb == "set") {
        std::list<std::wstring> names;
        for (size_t i = 2; i < args.size(); ++i) names.push_back(FromUtf8(args[i]));
        return Outcome(db.SaveInterferenceIgnoreList(names),
                       "set the ignore list (" + std::to_string(names.size()) + " names)");
    }
    return Usage("expected: db ignore list|set NAME...");
}

// Between the SQLite file of the database folder and a server, whatever VANTOR_DATABASE_URL says.
int Copy(const Args& args) {
    if (args.size() != 3 || (args[1] != "--to" && args[1] != "--from") || args[2].empty())
        return Usage("expected: db copy --to URL|--from URL");
    const std::wstring file = zeb_db::ZEBDataHelper::GetDatabaseFile();
    std::string message;
    const int status = args[1] == "--to" ? zeb_db::CopyFileToServer(file, args[2], message)
                                         : zeb_db::CopyServerToFile(args[2], file, message);
    std::fprintf(status == 0 ? stdout : stderr, "%s%s\n",
                 status == 0 ? "" : "vantor-rules db: ", message.c_str());
    return status;
}

int RunDb(const Args& args) {
    if (args.empty()) return Usage("expected: db path|fasteners|materials|ignore|copy");
    const std::string& topic = args[0];
    if (topic == "copy") return Copy(args);
    if (topic != "path" && topic != "fasteners" && topic != "materials" && topic != "ignore")
        return Usage(("unknown topic '" + topic + "'").c_str());
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db) {
        std::fprintf(stderr, "vantor-rules db: no usable database at %s\n",
                     ToUtf8(zeb_db::ZEBDataHelper::GetDatabaseLocation()).c_str());
        return 2;
    }
    if (topic == "path") {
        if (args.size() != 1) return Usage("expected: db path");
        PrintLine(db->GetDatabasePath());
        return 0;
    }
    if (topic == "fasteners") return Fasteners(*db, args);
    if (topic == "materials") return Materials(*db, args);
    return Ignore(*db, args);
}

}  // namespace

VANTOR_HOST_COMMAND(
    db, "db", "path | fasteners ... | materials ... | ignore ... | copy ...",
    "The shared database: the PostgreSQL database VANTOR_DATABASE_URL names (a libpq URI or\n"
    "key=value string), else vantor.sqlite in VANTOR_DATABASE_DIR, else $XDG_DATA_HOME/vantor:\n"
    "  db path                                   the database in use (a URL without its password)\n"
    "  db fasteners list|add NAME|rename OLD NEW|delete NAME\n"
    "  db materials list|add GROUP MATERIAL|delete GROUP MATERIAL   (list: group TAB material)\n"
    "  db ignore list|set NAME...                the interference ignore list, in order\n"
    "  db copy --to URL | --from URL             the SQLite file into an empty PostgreSQL "
    "database,\n"
    "                                            or back into a new file; the copy replaces the\n"
    "                                            starter catalogue and is all or nothing\n"
    "Exit 0 done, 1 already exists or refused, 2 bad arguments or no usable database.",
    RunDb);
