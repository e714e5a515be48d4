#pragma once

#include <string>
#include <vector>

// The module's temporary folder "VantorTemp" in the user's temporary folder, created for
// everyone to write in; no trailing separator. The user's temporary folder is $TMPDIR when set,
// else /tmp/vantor-<euid>, made 0700 when absent. Empty when that folder cannot be made, or is
// a link, not a folder, another user's or writable by group or others.
std::wstring GetModuleTempFolder();
// True when the folder exists or could be created and a probe folder can be made inside it.
bool IsFolderUsable(const std::wstring& path);

// File-name helpers; "/" and "\" both separate folders.
std::wstring GetFileNameFromPath(const std::wstring& path);
// The file name cut before its first point.
std::wstring GetBaseFileName(const std::wstring& path);
bool ContainsNoCase(const std::wstring& text, const std::vector<std::wstring>& array);
// File name of entry `index` of the database module list; empty outside the list.
std::wstring GetDBModuleFileName(int index);

// Log of an import in the module's temporary folder: <spreadsheet base name><suffix>. Leaves
// `logPath` as it was when the spreadsheet path has no folder or its file name no point; empties
// it when there is no module temporary folder.
void BuildImportLogPath(const std::wstring& spreadsheetPath, const std::wstring& logSuffix,
                        std::wstring& logPath);
// Writes one pass of an import log: the heading, then each entry followed by "\n". The first
// pass empties the log, later passes append. A new log is readable by its owner only. Links at
// the log's place are never followed; false, with nothing written, when the file there is not
// a plain file of the effective user with a single name.
bool WriteImportLogPass(const std::wstring& logPath, bool firstPass, const std::wstring& heading,
                        const std::vector<std::wstring>& entries);

// A new zero-terminated UTF-8 copy of the text in a buffer of at least 2 x length + 2 bytes;
// the caller frees it with delete[].
char* ToAnsiBuffer(const std::wstring& text);

// Reads a file property kept as the extended attribute "user.<property>". Returns 0 and sets
// `value` when the property was read; otherwise a failure code, `value` unchanged.
long ReadShellProperty(const std::wstring& path, const std::wstring& property, std::wstring& value);
// `name` cut before its first point when the file's part type (the property "Vantor.PartType")
// reads "Part"; else `name`.
std::wstring GetPartDisplayName(const std::wstring& path, const std::wstring& name);
