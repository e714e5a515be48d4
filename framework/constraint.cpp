#include "framework/constraint.h"

#include "framework/zeb_xml.h"

CZEBConstraint::CZEBConstraint(ZEBConstraintType_e type, const std::wstring& name, bool enabled)
    : m_type(type), m_name(name), m_enabled(enabled) {}

// The XML document is the copy's own, made when it is first asked for its element.
CZEBConstraint::CZEBConstraint(const CZEBConstraint& other)
    : m_type(other.m_type),
      m_name(other.m_name),
      m_enabled(other.m_enabled),
      m_params(other.m_params) {}

CZEBConstraint::~CZEBConstraint() = default;

CZebParamStorage* CZEBConstraint::FindParameterInArray(long id) {
    for (CZebParamStorage* p : m_params)
        if (p && p->GetParam()->id == id) return p;
    return nullptr;
}

ZebXMLNode* CZEBConstraint::GetXMLNode() {
    if (!m_doc) m_doc = std::make_unique<ZebXMLDocument>();
    ZebXMLNode* node = m_doc->CreateNode(L"Constraint");
    node->AddAttribute(L"Name", m_name);
    node->AddAttribute(L"Type", std::to_wstring(static_cast<int>(m_type)));
    node->AddAttribute(L"Status", m_enabled ? L"1" : L"0");
    for (const CZebParamStorage* p : m_params) {
        ZebXMLNode* child = node->AppendNode(L"Parameter");
        child->AddAttribute(L"Type", std::to_wstring(p->GetParam()->id));
        child->AddAttribute(L"ValueType", std::to_wstring(p->GetType()));
        delete child;
    }
    return node;
}
