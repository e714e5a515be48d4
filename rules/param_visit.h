#pragma once

#include <string>

#include "framework/param_storage.h"

// Calls `fn` with the typed record of `param`; false for a value type outside 1 to 8.
template <class Fn>
bool VisitTyped(CZebParamStorage& param, Fn&& fn) {
    switch (param.GetType()) {
        case ZebType_Int:
            fn(*param.As<int32_t>());
            return true;
        case ZebType_Long:
            fn(*param.As<long>());
            return true;
        case ZebType_Bool:
            fn(*param.As<bool>());
            return true;
        case ZebType_Double:
            fn(*param.As<double>());
            return true;
        case ZebType_String:
            fn(*param.As<std::wstring>());
            return true;
        case ZebType_Opaque:
            fn(*param.As<ZebOpaque>());
            return true;
        case ZebType_Unsigned:
            fn(*param.As<uint32_t>());
            return true;
        case ZebType_Row:
            fn(*param.As<ZebRow>());
            return true;
        default:
            return false;
    }
}
