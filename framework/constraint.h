#pragma once

#include <memory>
#include <string>

#include "framework/param_storage.h"
#include "framework/vantor_export.h"
#include "framework/zeb_owning_array.h"
#include "framework/zeb_types.h"

class ZebXMLDocument;
class ZebXMLNode;

// A constraint placed on a rule by the framework or a dialog. It owns its parameters and
// writes itself as one "Constraint" element.
class VANTOR_FW_API CZEBConstraint {
public:
    CZEBConstraint(ZEBConstraintType_e type, const std::wstring& name, bool enabled);
    virtual ~CZEBConstraint();
    CZEBConstraint(const CZEBConstraint& other);
    CZEBConstraint& operator=(const CZEBConstraint&) = delete;

    ZEBConstraintType_e GetType() const { return m_type; }
    const std::wstring& GetName() const { return m_name; }
    bool IsEnabled() const { return m_enabled; }

    ZebOwningArray<CZebParamStorage>& Params() { return m_params; }
    CZebParamStorage* FindParameterInArray(long id);

    // A "Constraint" element with "Name", "Type" and "Status" and one "Parameter" child per
    // parameter (id and type). The element belongs to the constraint's own document; appending
    // it to an element of another document copies it there. The caller deletes the handle.
    ZebXMLNode* GetXMLNode();

private:
    ZEBConstraintType_e m_type;
    std::wstring m_name;
    bool m_enabled;
    ZebOwningArray<CZebParamStorage> m_params;
    std::unique_ptr<ZebXMLDocument> m_doc;
};
