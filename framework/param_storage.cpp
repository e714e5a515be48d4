#include "framework/param_storage.h"

namespace {
std::unique_ptr<ZebTypedParamBase> MakeRecord(int32_t type) {
    switch (type) {
        case ZebType_Int:
            return std::make_unique<ZebTypedParam<int32_t>>();
        case ZebType_Long:
            return std::make_unique<ZebTypedParam<long>>();
        case ZebType_Bool:
            return std::make_unique<ZebTypedParam<bool>>();
        case ZebType_Double:
            return std::make_unique<ZebTypedParam<double>>();
        case ZebType_String:
            return std::make_unique<ZebTypedParam<std::wstring>>();
        case ZebType_Opaque:
            return std::make_unique<ZebTypedParam<ZebOpaque>>();
        case ZebType_Unsigned:
            return std::make_unique<ZebTypedParam<uint32_t>>();
        case ZebType_Row:
            return std::make_unique<ZebTypedParam<ZebRow>>();
        default:
            return std::make_unique<ZebTypedParamBase>();
    }
}
}  // namespace

CZebParamStorage::CZebParamStorage(int32_t type) : m_type(type), m_param(MakeRecord(type)) {}

CZebParamStorage::CZebParamStorage(const CZebParamStorage& other)
    : m_type(other.m_type), m_param(other.m_param->Clone()) {}

CZebParamStorage::~CZebParamStorage() = default;
