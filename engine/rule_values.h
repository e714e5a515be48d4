#pragma once

// Reading a rule's parameters: the values the module made, by parameter id.
#include <optional>
#include <string>
#include <vector>

#include "framework/zeb_rule.h"

template <class T>
const ZebTypedParam<T>* Param(CZebRule& rule, long id) {
    CZebParamStorage* storage = rule.FindParameterInArray(id);
    return storage ? storage->As<T>() : nullptr;
}

template <class T>
std::optional<T> Value(CZebRule& rule, long id, int index = 0) {
    const ZebTypedParam<T>* p = Param<T>(rule, id);
    if (!p || p->values.GetSize() <= index) return std::nullopt;
    return p->values[index];
}

inline std::vector<ZebRow> Rows(CZebRule& rule, long id) {
    std::vector<ZebRow> rows;
    if (const ZebTypedParam<ZebRow>* p = Param<ZebRow>(rule, id))
        for (const ZebRow& row : p->values) rows.push_back(row);
    return rows;
}

// A number typed into a table cell; 0 when it is none.
inline double ParseLength(const std::wstring& text) {
    try {
        return std::stod(text);
    } catch (...) {
        return 0.0;
    }
}
