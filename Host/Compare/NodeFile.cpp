#include "Host/Compare/NodeFile.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <pugixml.hpp>
#include <vector>

#include "Common/Base/Text.h"
#include "Host/Base/Failure.h"
#include "NodeFabric/Authoring.h"
#include "Platform/Text.h"

namespace Host {

using namespace Harbor;

namespace {

constexpr std::string_view LogHeading = "ACNode[";

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file || std::filesystem::is_directory(path)) throw BadInput(path + ": can't be read");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.ends_with('\0')) text.pop_back();  // a dump's own end
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
            Refuse(static_cast<std::ptrdiff_t>(zero), "a 0 character");
        }
        pugi::xml_document document;
        constexpr unsigned options = pugi::parse_default | pugi::parse_fragment;
        const auto parsed = document.load_buffer(text_.data(), text_.size(), options, pugi::encoding_utf8);
        if (!parsed) Refuse(parsed.offset, parsed.description());
        pugi::xml_node root = OnlyTree(document);
        way_.push_back(BuildNode(root));
        root.traverse(*this);
        return way_.front();
    }

private:
    [[noreturn]] void Refuse(std::ptrdiff_t offset, const std::string& reason) const {
        const auto end = text_.begin() + std::min(offset, std::ssize(text_));
        const auto line = 1 + std::count(text_.begin(), end, '\n');
        throw BadInput(path_ + ":" + std::to_string(line) + ": " + reason);
    }
    [[noreturn]] void Refuse(pugi::xml_node at, const std::string& reason) const { Refuse(at.offset_debug(), reason); }

    // With blanks, so that the lines keep their numbers.
    void BlankOutHeading() {
        if (!text_.starts_with(LogHeading)) return;
        std::fill_n(text_.begin(), std::min(text_.find('\n'), text_.size()), ' ');
    }

    pugi::xml_node OnlyTree(const pugi::xml_document& document) const {
        pugi::xml_node place = document;
        if (const auto nr = document.child("nr"); nr && nr == document.first_child()) {
            if (nr.next_sibling()) Refuse(nr.next_sibling(), "something stands behind </nr>");
            place = nr;
        }
        const auto tree = place.first_child();
        if (!tree) Refuse(0, "there is no <node>");
        if (tree.next_sibling()) Refuse(tree.next_sibling(), "a second tree");
        return tree;
    }

    // The library's walk is no recursion: a tree may be deeper than any call stack.
    bool for_each(pugi::xml_node& element) override {
        way_.resize(static_cast<std::size_t>(depth()) + 1);
        if (std::string_view(element.name()) != "node") {
            AddAttribute(way_.back(), element);
            return true;
        }
        ACNode node = BuildNode(element);
        Check(AcnAppendChild(way_.back().Handle(), node.Handle()), "AcnAppendChild");
        way_.push_back(std::move(node));
        return true;
    }

    ACNode BuildNode(pugi::xml_node element) const {
        if (std::string_view(element.name()) != "node") Refuse(element, "expected <node>");
        const WideString name = Value(element, "name");
        const WideString type = Value(element, "type");
        ACNode node;
        Check(AcnCreateNode(name.c_str(), type.c_str(), node.Receive()), "AcnCreateNode");
        return node;
    }

    void AddAttribute(ACNode& node, pugi::xml_node element) const {
        if (std::string_view(element.name()) != "attribute" || element.first_child()) {
            Refuse(element, "expected <attribute name=\"\" type=\"\" value=\"\"/> or <node>");
        }
        const WideString name = Value(element, "name");
        if (name.empty()) Refuse(element, "an attribute without a name");
        if (node.HasAttribute(name.c_str())) Refuse(element, "a second attribute '" + ToUtf8(name) + "'");
        SetValue(node, name, element);
    }

    void SetValue(ACNode& node, const WideString& name, pugi::xml_node element) const {
        const std::string type = ToUtf8(Value(element, "type"));
        const WideString value = Value(element, "value");
        if (type == "text") {
            node.SetText(name.c_str(), value.c_str(), static_cast<std::uint32_t>(value.size()));
        } else if (type == "bool") {
            if (value != u"true" && value != u"false") Refuse(element, "a bool is true or false");
            node.SetBool(name.c_str(), value == u"true");
        } else if (type == "int32") {
            node.SetInt32(name.c_str(), Number<std::int32_t>(element));
        } else if (type == "uint32") {
            const auto number = Number<std::uint32_t>(element);
            Check(AcnSetAttribute(node.Handle(), name.c_str(), AcnTypeUInt32, &number, sizeof(number)),
                  "AcnSetAttribute");
        } else if (type == "int64") {
            node.SetInt64(name.c_str(), Number<std::int64_t>(element));
        } else {
            Refuse(element, "unknown type '" + type + "'; text, int32, uint32, int64 and bool are known");
        }
    }

    template <class T>
    T Number(pugi::xml_node element) const {
        const std::string_view text = element.attribute("value").value();
        T number{};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size()) {
            Refuse(element, "'" + std::string(text) + "' is no " + element.attribute("type").value());
        }
        return number;
    }

    WideString Value(pugi::xml_node element, const char* name) const {
        const auto attribute = element.attribute(name);
        if (!attribute) Refuse(element, "<" + std::string(element.name()) + "> lacks " + name);
        const std::string_view value = attribute.value();
        if (!IsUtf8(value)) Refuse(element, std::string(name) + " isn't UTF-8");
        return FromUtf8(value);
    }

    const std::string& path_;
    std::string text_;
    std::vector<ACNode> way_;  // from the root to where the walk is
};

}  // namespace

ACNode ReadNodeFile(const std::string& path) {
    return Reader(path).Read();
}

}  // namespace Host
