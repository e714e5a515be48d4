#pragma once

#include <memory>
#include <string>

#include "framework/module_entry_points.h"

// Loads ZEBAssemblyRules.so as the framework does and resolves its entry points. The loader
// also loads the database module ZEBDatabaseu.so from the same folder when it is there and
// hands its path to the rule module.
class ModuleLoader {
public:
    static constexpr const char* kModuleFile = "ZEBAssemblyRules.so";
    static constexpr const char* kDatabaseModuleFile = "ZEBDatabaseu.so";

    ModuleLoader() = default;
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // The folder named by `option` when not empty, else VANTOR_MODULE_DIR, else the folder of
    // the framework library.
    static std::string ModuleFolder(const std::string& option);

    // False with `error` set when the module cannot be loaded or lacks an entry point.
    bool Load(const std::string& folder, std::string& error);

    SetXMLDocFn SetXMLDoc = nullptr;
    GetAllRulesFn GetAllRules = nullptr;
    GetRuleFn GetRule = nullptr;
    DeleteRuleFn DeleteRule = nullptr;
    GetModuleNameFn GetModuleName = nullptr;
    GetModuleSummaryFn GetModuleSummary = nullptr;
    SetDBModuleListFn SetDBModuleList = nullptr;
    // The fastener database dialog; null when the module does not offer it.
    LaunchFastenerDatabaseDlgFn LaunchFastenerDatabaseDlg = nullptr;

    // Path of the loaded database module; empty when there is none.
    const std::string& DatabaseModulePath() const { return m_databasePath; }
    // Why a database module that is present could not be loaded; empty otherwise.
    const std::string& DatabaseModuleError() const { return m_databaseError; }
    // The folder the module was loaded from, where the engine sits beside it.
    const std::string& Folder() const { return m_folder; }

private:
    void* m_module = nullptr;
    void* m_database = nullptr;
    std::string m_databasePath;
    std::string m_databaseError;
    std::string m_folder;
};

// Sets VANTOR_DATABASE_DIR to the user's database folder (creating it) when it names none, as the
// framework does before it loads a module. Load calls it.
void NameDefaultDatabaseFolder();

// Owns a rule made by the module and gives it back through DeleteRule.
class RuleHandle {
public:
    RuleHandle(const ModuleLoader& loader, CZebRule* rule)
        : m_delete(loader.DeleteRule), m_rule(rule) {}
    ~RuleHandle() { m_delete(&m_rule); }
    RuleHandle(const RuleHandle&) = delete;
    RuleHandle& operator=(const RuleHandle&) = delete;
    RuleHandle(RuleHandle&& other) noexcept : m_delete(other.m_delete), m_rule(other.m_rule) {
        other.m_rule = nullptr;
    }

    CZebRule* get() const { return m_rule; }
    CZebRule* operator->() const { return m_rule; }

private:
    DeleteRuleFn m_delete;
    CZebRule* m_rule;
};
