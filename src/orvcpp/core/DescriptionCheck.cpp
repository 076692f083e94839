// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/DescriptionCheck.h"

#include "orvcpp/core/ReferenceGraph.h"

#include <QByteArray>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace orv {

namespace {

/// Elements inside each other; a description needs 6, and the library's reader refuses 257.
constexpr std::size_t deepestElement = 64;
constexpr std::size_t longestText = 120;

/// References that the library follows while it computes a value. The others (bounds,
/// availability, selected features) start at a node whose value is computed, and end there.
bool isFollowed(const QStringRef& element) {
    static constexpr const char* names[] = {"pValue",        "pAddress",     "pIndex",
                                            "pLength",       "pOffset",      "pVariable",
                                            "pValueIndexed", "pValueDefault"};
    return std::any_of(std::begin(names), std::end(names),
                       [&](const char* name) { return element == QLatin1String(name); });
}

/// The name without the prefix of a namespace.
QStringRef localName(const QStringRef& name) {
    return name.mid(name.lastIndexOf(QLatin1Char(':')) + 1);
}

bool isOf(const QString& kind, std::initializer_list<const char*> kinds) {
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](const char* each) { return kind == QLatin1String(each); });
}

/// As the library reads it: decimal, or hexadecimal behind "0x"; 0 for other texts.
std::int64_t number(const QString& text) {
    return std::strtoll(text.toUtf8().constData(), nullptr, 0);
}

bool isLength(std::int64_t bytes) {
    return bytes >= 0 && bytes <= largestRegister;
}

/// Reads a description into a graph of references.
class DescriptionReader {
public:
    explicit DescriptionReader(const QByteArray& xml) : m_xml(xml) {
        // The library ignores undeclared prefixes.
        m_xml.setNamespaceProcessing(false);
    }

    std::string fault() {
        while (m_fault.empty() && !m_xml.atEnd())
            take(m_xml.readNext());
        if (m_fault.empty() && m_xml.hasError())
            m_fault = "line " + std::to_string(m_xml.lineNumber()) + ": " +
                      onOneLine(m_xml.errorString().toStdString());
        if (m_fault.empty())
            m_fault = m_graph.fault();
        return m_fault.empty() ? lengthFault() : m_fault;
    }

private:
    struct Element {
        QString kind;
        /// The node that this element is or is part of; -1 outside of nodes.
        int node = -1;
        /// Kind of that node.
        QString nodeKind;
        bool isReference = false;
        QString text;
    };
    /// A register, the node with its length, and the register's kind.
    struct LengthReference {
        int reader;
        int length;
        bool isNumber;
    };

    void take(QXmlStreamReader::TokenType token) {
        if (token == QXmlStreamReader::StartElement)
            open();
        else if (token == QXmlStreamReader::EndElement)
            close();
        else if (token == QXmlStreamReader::Characters)
            addText();
        else if (token == QXmlStreamReader::DTD && m_xml.text().contains(QLatin1Char('[')))
            m_fault = "it declares entities";
    }

    void open() {
        if (m_elements.size() == deepestElement) {
            m_fault = "more than " + std::to_string(deepestElement) + " elements are nested";
            return;
        }
        Element element;
        if (!m_elements.empty()) {
            element.node = m_elements.back().node;
            element.nodeKind = m_elements.back().nodeKind;
            if (m_elements.back().isReference)
                m_fault = "a reference of node " + nameOf(element.node) + " has elements";
        }
        element.kind = localName(m_xml.qualifiedName()).toString();
        element.isReference = isFollowed(localName(m_xml.qualifiedName()));
        const QXmlStreamAttributes attributes = m_xml.attributes();
        if (attributes.hasAttribute(QLatin1String("Name")) &&
            !isOf(element.kind, {"pVariable", "Expression", "Constant"}))
            openNode(element, attributes.value(QLatin1String("Name")).toString());
        if (attributes.hasAttribute(QLatin1String("pOffset")))
            refer(element.node, attributes.value(QLatin1String("pOffset")).toString(), 1);
        m_elements.push_back(std::move(element));
    }

    void openNode(Element& element, const QString& name) {
        const int parent = element.node;
        element.node = m_graph.node(name);
        element.nodeKind = element.kind;
        if (element.kind != QLatin1String("Integer"))
            m_variables.insert(element.node);
        if (parent < 0)
            return;
        // An entry is read by its register; other nested nodes compute a part of theirs.
        if (element.kind == QLatin1String("StructEntry"))
            m_graph.add(element.node, parent, 1);
        else
            m_graph.add(parent, element.node, 1);
    }

    void close() {
        const Element element = std::move(m_elements.back());
        m_elements.pop_back();
        if (element.node < 0)
            return;
        const QString text = element.text.trimmed();
        // The library computes both bounds of a converter from both bounds of its value.
        const bool isConverters = element.nodeKind.endsWith(QLatin1String("Converter"));
        if (element.isReference)
            refer(element.node, text,
                  isConverters && element.kind == QLatin1String("pValue") ? 2 : 1);
        if (element.kind == QLatin1String("Value") && element.nodeKind == QLatin1String("Integer"))
            addConstant(element.node, number(text));
        const bool isNumber = !isOf(element.nodeKind, {"Register", "StringReg"});
        if (element.kind == QLatin1String("Length") && isNumber && !isLength(number(text)))
            m_fault = "the register " + nameOf(element.node) + " has " +
                      onOneLine(text.toStdString()) + " bytes";
        if (element.kind == QLatin1String("pLength"))
            m_lengths.push_back({element.node, m_graph.node(text), isNumber});
    }

    /// Two nodes of one name count as variable: the library knows one of them.
    void addConstant(int node, std::int64_t value) {
        if (!m_constants.emplace(node, value).second)
            m_variables.insert(node);
    }

    void addText() {
        if (m_elements.empty())
            return;
        Element& element = m_elements.back();
        const bool isRead = element.isReference || isOf(element.kind, {"Length", "Value"});
        if (isRead && m_xml.isCDATA())
            m_fault = "node " + nameOf(element.node) + " has a reference or a number as CDATA";
        if (isRead)
            element.text += m_xml.text();
    }

    void refer(int from, const QString& name, int times) {
        if (from < 0 || name.isEmpty())
            return;
        m_graph.add(from, m_graph.node(name), times);
        m_variables.insert(from);
    }

    /// The length of a number is used without a check by the library, that of others is checked
    /// before each use.
    std::string lengthFault() const {
        for (const LengthReference& each : m_lengths) {
            const auto constant = m_constants.find(each.length);
            const bool isConstant =
                constant != m_constants.end() && m_variables.count(each.length) == 0;
            if (each.isNumber && !(isConstant && isLength(constant->second)))
                return "the length of the register " + nameOf(each.reader) + " is not limited";
        }
        return {};
    }

    std::string nameOf(int node) const { return node < 0 ? "\"\"" : m_graph.name(node); }

    QXmlStreamReader m_xml;
    ReferenceGraph m_graph;
    std::vector<Element> m_elements;
    /// Values of nodes; a node of m_variables is none.
    std::unordered_map<int, std::int64_t> m_constants;
    std::unordered_set<int> m_variables;
    std::vector<LengthReference> m_lengths;
    std::string m_fault;
};

/// Without the zeros that pad it to whole words. Those of UTF-16 stay.
std::size_t sizeWithoutPadding(const char* bytes, std::size_t size) {
    if (size < 2 || bytes[0] == '\0' || bytes[1] == '\0')
        return size;
    while (size > 0 && bytes[size - 1] == '\0')
        --size;
    return size;
}

} // namespace

std::string onOneLine(const std::string& text) {
    std::string line = text.substr(0, longestText);
    std::replace_if(
        line.begin(), line.end(),
        [](char letter) { return static_cast<unsigned char>(letter) < ' ' || letter == 0x7F; },
        ' ');
    return text.size() > longestText ? line + "..." : line;
}

std::string descriptionFault(const char* bytes, std::size_t size) {
    if (size > largestDescription)
        return "it has " + std::to_string(size) + " bytes";
    const std::size_t used = sizeWithoutPadding(bytes, size);
    if (used == 0)
        return "it is empty";
    return DescriptionReader(QByteArray::fromRawData(bytes, static_cast<int>(used))).fault();
}

} // namespace orv
