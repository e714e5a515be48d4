#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/vantor_export.h"

namespace pugi {
struct xml_node_struct;
}

class ZebXMLDocument;
class ZebXMLElementText;
class ZebXMLNodeList;

// A small handle on one element of a ZebXMLDocument. The caller owns and deletes every handle
// it receives; deleting a handle never changes the document.
class VANTOR_FW_API ZebXMLNode {
public:
    ZebXMLNode(ZebXMLDocument* doc, pugi::xml_node_struct* node) : m_doc(doc), m_node(node) {}

    std::wstring GetName() const;
    ZebXMLDocument* GetOwnerDocument() const { return m_doc; }

    // Sets the attribute, appending it after the existing ones when it is new.
    bool AddAttribute(const std::wstring& name, const std::wstring& value);
    // Narrow-text variant; texts are UTF-8.
    bool AddAttribute1(const char* name, const char* value);
    // False, and `value` untouched, when the attribute is absent.
    bool GetAttributeValue(const std::wstring& name, std::wstring& value) const;
    // Narrow-name variant, for names fixed in the code; the name is UTF-8.
    bool GetAttributeValue1(const char* name, std::wstring& value) const;
    // The UTF-8 texts of the attributes `names`, as the document holds them, found in one pass
    // over the element's attributes: texts[i] is null when names[i] is absent. Valid while the
    // attributes are unchanged.
    void GetAttributeTexts1(const std::string_view* names, size_t count, const char** texts) const;
    // All attributes in document order.
    std::vector<std::pair<std::wstring, std::wstring>> GetAttributes() const;

    // New child element at the end; the caller deletes the returned handle.
    ZebXMLNode* AppendNode(const std::wstring& name);
    // Moves `child` (a detached element or an element elsewhere in the same document) to the
    // end of this element's children. An element of another document is copied instead.
    bool AppendNode(ZebXMLNode* child);
    // Appends `count` elements named `name` (fixed in the code) in order, element i as
    // write(i, text) writes it (or none, when it writes nothing). The text is parsed in batches,
    // which costs a fraction of building every element through ZebXMLNode when a table has
    // hundreds of thousands of rows; for that many, it is written on a thread of its own while
    // this one parses, so `write` must not touch the document. The document ends up exactly as
    // with AppendNode and AddAttribute1. False when any text could not be added.
    bool AppendElements1(const char* name, size_t count,
                         const std::function<void(size_t index, ZebXMLElementText& text)>& write);
    // Removes `child` and its subtree from this element.
    bool RemoveChild(ZebXMLNode* child);
    // Puts `newChild` (an element of this document) where `oldChild`, a child of this element,
    // stands, and removes `oldChild` with its subtree.
    bool ReplaceChild(ZebXMLNode* newChild, ZebXMLNode* oldChild);

    void SetNodeValue(const std::wstring& text);
    std::wstring GetNodeValue() const;
    // False, and `value` untouched, when the text holds no decimal integer.
    bool GetNodeValueInInt(int& value) const;

    // First child element matching `name` (an element name or a relative path); null when none.
    ZebXMLNode* SelectSingleNode(const std::wstring& name) const;
    // Child elements matching `name`, in document order. Never null.
    ZebXMLNodeList* GetNodeList(const std::wstring& name) const;
    // All child elements in document order. Never null.
    ZebXMLNodeList* GetChildElements() const;
    // The child elements named names[i] (UTF-8, fixed in the code) appended to lists[i], for
    // every i < count, in document order and in one pass: an element with a table holds hundreds
    // of thousands of children, which every lookup by name would walk again.
    void GetChildElementsByName1(const std::string_view* names, size_t count,
                                 std::vector<ZebXMLNode>* lists) const;
    // Null for the document element and for detached elements.
    ZebXMLNode* GetParentNode() const;

private:
    ZebXMLDocument* m_doc;
    pugi::xml_node_struct* m_node;
};

// The XML text of elements of one name, each with its attributes, as ZebXMLNode::AppendElements1
// has them written.
class VANTOR_FW_API ZebXMLElementText {
public:
    // `name` and the attribute names are fixed in the code and need no escaping.
    explicit ZebXMLElementText(const char* name);

    void BeginElement();
    // The value up to its first L'\0', as an attribute can carry no more.
    void Attribute(std::string_view name, std::wstring_view value);
    void EndElement();

    const char* Data() const { return m_text.get(); }
    size_t Size() const { return m_used; }

private:
    // Where `bytes` more bytes of text go.
    char* Room(size_t bytes);

    const char* m_name;
    size_t m_nameLength;
    std::unique_ptr<char[]> m_text;
    size_t m_used = 0;
    size_t m_capacity = 0;
};

// An owned list of element handles; deleting the list deletes nothing in the document.
class VANTOR_FW_API ZebXMLNodeList {
public:
    ZebXMLNodeList(ZebXMLDocument* doc, std::vector<pugi::xml_node_struct*> nodes)
        : m_doc(doc), m_nodes(std::move(nodes)) {}
    long GetSize() const { return static_cast<long>(m_nodes.size()); }
    // A new handle the caller deletes; null outside the list.
    ZebXMLNode* operator[](long index) const;
    // A handle by value, for loops over long lists; `index` must be in the list.
    ZebXMLNode At(long index) const {
        return ZebXMLNode(m_doc, m_nodes[static_cast<size_t>(index)]);
    }

private:
    ZebXMLDocument* m_doc;
    std::vector<pugi::xml_node_struct*> m_nodes;
};

class VANTOR_FW_API ZebXMLDocument {
public:
    ZebXMLDocument();
    ~ZebXMLDocument();
    ZebXMLDocument(const ZebXMLDocument&) = delete;
    ZebXMLDocument& operator=(const ZebXMLDocument&) = delete;

    // On failure the document is empty and `error` says what and where ("line L, column C").
    // Comments are kept, so that a document read and written again keeps them.
    bool LoadFile(const std::wstring& path, std::wstring& error);
    bool LoadXML(const std::string& utf8Text, std::wstring& error);
    // Writes through a temporary file in the same folder and a rename, so an existing file is
    // either replaced whole or left as it was. A replaced file keeps its mode; a new file gets
    // what the umask leaves of 0666.
    bool SaveFile(const std::wstring& path, std::wstring& error) const;
    std::string GetXML() const;
    // Drops every node and gives their memory back; handles into the document are left dangling.
    void Clear();

    // A new element that belongs to this document but has no place in its tree yet.
    ZebXMLNode* CreateNode(const std::wstring& name);
    // Null when the document has no document element.
    ZebXMLNode* GetDocumentElement();
    // Replaces the document element by a new empty one.
    ZebXMLNode* CreateDocumentElement(const std::wstring& name);
    // Every element named `name`, at any depth, in document order. Never null.
    ZebXMLNodeList* GetElementsByTagName(const std::wstring& name);

    struct Impl;
    Impl* GetImpl() const { return m_impl.get(); }

private:
    std::unique_ptr<Impl> m_impl;
};
