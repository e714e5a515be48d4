#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "framework/vantor_export.h"
#include "framework/zeb_array.h"
#include "framework/zeb_types.h"

// Severity code -> (first, second) value of one deviation map of the result criteria.
using ZebDeviationMap = std::map<int32_t, std::pair<double, double>>;

// Everything of a typed parameter except its value list.
struct VANTOR_FW_API ZebTypedParamBase {
    virtual ~ZebTypedParamBase() = default;

    std::wstring name;
    int32_t op = ZebOp_None;
    ZebArray<int32_t> opOptions;
    // values: in the typed subclass
    int32_t kind = ZebParam_Plain;
    std::wstring remarks;
    int32_t id = 0;
    bool status = true;
    int32_t criteriaType = 0;
    bool criteriaStatus = false;
    ZebDeviationMap percentDeviation;
    ZebDeviationMap absoluteDeviation;
    ZebDeviationMap absoluteValue;

    virtual int32_t ValueCount() const { return 0; }
    virtual void ClearValues() {}
    virtual std::unique_ptr<ZebTypedParamBase> Clone() const {
        return std::make_unique<ZebTypedParamBase>(*this);
    }
};

// A parameter record whose value list holds elements of type T.
template <class T>
struct ZebTypedParam : ZebTypedParamBase {
    ZebArray<T> values;

    int32_t ValueCount() const override { return values.GetSize(); }
    void ClearValues() override { values.RemoveAll(); }
    std::unique_ptr<ZebTypedParamBase> Clone() const override {
        return std::make_unique<ZebTypedParam<T>>(*this);
    }
};

template <class T>
struct ZebTypeCode;
template <>
struct ZebTypeCode<int32_t> {
    static constexpr Type_e value = ZebType_Int;
};
template <>
struct ZebTypeCode<long> {
    static constexpr Type_e value = ZebType_Long;
};
template <>
struct ZebTypeCode<bool> {
    static constexpr Type_e value = ZebType_Bool;
};
template <>
struct ZebTypeCode<double> {
    static constexpr Type_e value = ZebType_Double;
};
template <>
struct ZebTypeCode<std::wstring> {
    static constexpr Type_e value = ZebType_String;
};
template <>
struct ZebTypeCode<ZebOpaque> {
    static constexpr Type_e value = ZebType_Opaque;
};
template <>
struct ZebTypeCode<uint32_t> {
    static constexpr Type_e value = ZebType_Unsigned;
};
template <>
struct ZebTypeCode<ZebRow> {
    static constexpr Type_e value = ZebType_Row;
};

// One parameter of a rule: its value type and its typed record. A value type outside 1 to 8
// gets a record without values.
class VANTOR_FW_API CZebParamStorage {
public:
    explicit CZebParamStorage(int32_t type);
    CZebParamStorage(const CZebParamStorage& other);
    CZebParamStorage& operator=(const CZebParamStorage&) = delete;
    virtual ~CZebParamStorage();

    int32_t GetType() const { return m_type; }
    ZebTypedParamBase* GetParam() { return m_param.get(); }
    const ZebTypedParamBase* GetParam() const { return m_param.get(); }

    // The typed record, or null when the value type is not T's.
    template <class T>
    ZebTypedParam<T>* As() {
        return m_type == ZebTypeCode<T>::value ? static_cast<ZebTypedParam<T>*>(m_param.get())
                                               : nullptr;
    }
    template <class T>
    const ZebTypedParam<T>* As() const {
        return m_type == ZebTypeCode<T>::value ? static_cast<const ZebTypedParam<T>*>(m_param.get())
                                               : nullptr;
    }

private:
    int32_t m_type;
    std::unique_ptr<ZebTypedParamBase> m_param;
};
