// Writes the text of a dump: UTF-8 XML 1.0.
//
// A node is <node name="" type="">. Inside it are its attributes, as <attribute name="" type="" value=""/>, and its
// child nodes, each on its own line. The types are text, int32, uint32, int64 and bool; a bool is true or false.
#pragma once

#include <string>

#include "Node.h"

namespace NodeFabric {

class XmlWriter {
public:
    explicit XmlWriter(std::string& out) noexcept : out_(out) {}

    // If `withChildren` is true, leaves the element open and returns true: EndNode must be called. Else returns false.
    [[nodiscard]] bool BeginNode(const AcnNodeOpaque& node, std::size_t level, bool withChildren);
    void EndNode(std::size_t level);

private:
    void Indent(std::size_t level);
    void WriteAttribute(const Attribute& attribute, std::size_t level);
    void WriteValue(const AttributeValue& value);
    void WriteEscaped(std::u16string_view text);

    std::string& out_;
};

}  // namespace NodeFabric
