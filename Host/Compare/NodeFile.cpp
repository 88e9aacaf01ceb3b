#include "Host/Compare/NodeFile.h"

#include <algorithm>
#include <iterator>
#include <pugixml.hpp>
#include <vector>

#include "Common/Base/Text.h"
#include "Harbor/Failure.h"
#include "Host/Base/Failure.h"
#include "Host/Base/Number.h"
#include "Host/Base/UserFile.h"
#include "NodeFabric/Authoring.h"
#include "Platform/Text.h"

namespace Host {

using namespace Harbor;

namespace {

constexpr std::string_view LogHeading = "ACNode[";

std::string ReadFile(const std::string& path) {
    std::ifstream file = OpenInputFile("compare", path);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.ends_with('\0')) text.pop_back();  // the terminator of a dump
    return text;
}

bool IsUtf8(std::string_view text) {
    return text.empty() || Platform::MultiByteToWideChar(Platform::CP_UTF8, Platform::MB_ERR_INVALID_CHARS, text.data(),
                                                         static_cast<int>(text.size()), nullptr, 0) != 0;
}

class Reader : private pugi::xml_tree_walker {
public:
    explicit Reader(const std::string& path) : path_(path), text_(ReadFile(path)) {}

    ACNode Read() {
        BlankOutHeading();
        if (const std::size_t zero = text_.find('\0'); zero != text_.npos) {
            Fail(static_cast<std::ptrdiff_t>(zero), "a null character");
        }
        pugi::xml_document document;
        constexpr unsigned options = pugi::parse_default | pugi::parse_fragment;
        const auto parsed = document.load_buffer(text_.data(), text_.size(), options, pugi::encoding_utf8);
        if (!parsed) Fail(parsed.offset, parsed.description());
        pugi::xml_node root = OnlyTree(document);
        branch_.push_back(BuildNode(root));
        root.traverse(*this);
        return branch_.front();
    }

private:
    [[noreturn]] void Fail(std::ptrdiff_t offset, const std::string& reason) const {
        const auto end = text_.begin() + std::min(offset, std::ssize(text_));
        const auto line = 1 + std::count(text_.begin(), end, '\n');
        throw BadInput(path_ + ":" + std::to_string(line) + ": " + reason);
    }
    [[noreturn]] void Fail(pugi::xml_node at, const std::string& reason) const { Fail(at.offset_debug(), reason); }

    // Overwrites it with spaces, so that the lines keep their numbers.
    void BlankOutHeading() {
        if (!text_.starts_with(LogHeading)) return;
        std::fill_n(text_.begin(), std::min(text_.find('\n'), text_.size()), ' ');
    }

    pugi::xml_node OnlyTree(const pugi::xml_document& document) const {
        pugi::xml_node place = document;
        if (const auto nr = document.child("nr"); nr && nr == document.first_child()) {
            if (nr.next_sibling()) Fail(nr.next_sibling(), "content after </nr>");
            place = nr;
        }
        const auto tree = place.first_child();
        if (!tree) Fail(0, "no <node> in the file");
        if (tree.next_sibling()) Fail(tree.next_sibling(), "more than one tree");
        return tree;
    }

    // The library walks the tree without recursion: a tree may be deeper than any call stack.
    bool for_each(pugi::xml_node& element) override {
        branch_.resize(static_cast<std::size_t>(depth()) + 1);
        if (std::string_view(element.name()) != "node") {
            AddAttribute(branch_.back(), element);
            return true;
        }
        ACNode node = BuildNode(element);
        ThrowIfFailed(AcnAppendChild(branch_.back().Handle(), node.Handle()), "AcnAppendChild");
        branch_.push_back(std::move(node));
        return true;
    }

    ACNode BuildNode(pugi::xml_node element) const {
        if (std::string_view(element.name()) != "node") Fail(element, "expected <node>");
        const WideString name = Value(element, "name");
        const WideString type = Value(element, "type");
        ACNode node;
        ThrowIfFailed(AcnCreateNode(name.c_str(), type.c_str(), node.Receive()), "AcnCreateNode");
        return node;
    }

    void AddAttribute(ACNode& node, pugi::xml_node element) const {
        if (std::string_view(element.name()) != "attribute" || element.first_child()) {
            Fail(element, "expected <attribute name=\"\" type=\"\" value=\"\"/> or <node>");
        }
        const WideString name = Value(element, "name");
        if (name.empty()) Fail(element, "an attribute without a name");
        if (node.HasAttribute(name.c_str())) Fail(element, "duplicate attribute '" + ToUtf8(name) + "'");
        SetValue(node, name, element);
    }

    void SetValue(ACNode& node, const WideString& name, pugi::xml_node element) const {
        const std::string type = ToUtf8(Value(element, "type"));
        const WideString value = Value(element, "value");
        if (type == "text") {
            node.SetText(name.c_str(), value.c_str(), static_cast<std::uint32_t>(value.size()));
        } else if (type == "bool") {
            if (value != u"true" && value != u"false") Fail(element, "a bool must be true or false");
            node.SetBool(name.c_str(), value == u"true");
        } else if (type == "int32") {
            node.SetInt32(name.c_str(), Number<std::int32_t>(element));
        } else if (type == "uint32") {
            const auto number = Number<std::uint32_t>(element);
            ThrowIfFailed(AcnSetAttribute(node.Handle(), name.c_str(), AcnTypeUInt32, &number, sizeof(number)),
                          "AcnSetAttribute");
        } else if (type == "int64") {
            node.SetInt64(name.c_str(), Number<std::int64_t>(element));
        } else {
            Fail(element, "unknown type '" + type + "'; expected text, int32, uint32, int64 or bool");
        }
    }

    template <class T>
    T Number(pugi::xml_node element) const {
        const std::string_view text = element.attribute("value").value();
        const auto number = ParseNumber<T>(text);
        if (!number) Fail(element, "'" + std::string(text) + "' is not of type " + element.attribute("type").value());
        return *number;
    }

    WideString Value(pugi::xml_node element, const char* name) const {
        const auto attribute = element.attribute(name);
        if (!attribute) Fail(element, "<" + std::string(element.name()) + "> lacks " + name);
        const std::string_view value = attribute.value();
        if (!IsUtf8(value)) Fail(element, std::string(name) + " is not valid UTF-8");
        return FromUtf8(value);
    }

    const std::string& path_;
    std::string text_;
    std::vector<ACNode> branch_;  // from the root to the node that the walk has reached
};

}  // namespace

ACNode ReadNodeFile(const std::string& path) {
    return Reader(path).Read();
}

}  // namespace Host
