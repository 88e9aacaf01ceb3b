// Sequences of operations on nodes and on a model of plain data. Both must have the same tree after each operation, and
// no handle may be open at the end.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "Common/Base/HRes.h"
#include "Common/Nodes/ACNode.h"
#include "Fuzzing.h"

using namespace Harbor;

namespace {

using Value = std::variant<std::int64_t, WideString>;
using Attribute = std::pair<WideString, Value>;

struct ModelNode {
    WideString name;
    WideString type;
    std::vector<Attribute> attributes;
    ModelNode* parent = nullptr;
    std::vector<ModelNode*> children;
    WideString pathAbove;

    WideString Path() const { return (parent != nullptr ? parent->Path() : pathAbove) + u"\\" + name; }
    bool IsAtOrBelow(const ModelNode* other) const {
        return this == other || (parent != nullptr && parent->IsAtOrBelow(other));
    }
    ModelNode* Find(const WideString& wanted) const {
        const auto child = std::ranges::find(children, wanted, &ModelNode::name);
        return child != children.end() ? *child : nullptr;
    }
};

struct Slot {
    ACNode node;
    ModelNode* model = nullptr;
};

class Sequence {
public:
    explicit Sequence(FuzzedDataProvider& input) : input_(input) {}

    void Run() {
        for (std::size_t steps = 0; steps < 200 && input_.remaining_bytes() > 0; ++steps) Step();
    }

private:
    void Step() {
        using Operation = void (Sequence::*)(Slot&, Slot&);
        constexpr Operation operations[] = {
            &Sequence::Create, &Sequence::Copy,      &Sequence::Move,      &Sequence::Close,     &Sequence::Append,
            &Sequence::Remove, &Sequence::Clone,     &Sequence::TakeChild, &Sequence::FindChild, &Sequence::TakeParent,
            &Sequence::Search, &Sequence::SetNumber, &Sequence::SetText};
        Slot& a = Pick();
        Slot& b = Pick();
        (this->*input_.PickValueInArray(operations))(a, b);
        for (const Slot& slot : slots_) Compare(slot);
    }

    Slot& Pick() { return slots_[input_.ConsumeIntegralInRange<std::size_t>(0, slots_.size() - 1)]; }
    WideString Word() { return WideString(1, static_cast<char16_t>(u'a' + input_.ConsumeIntegralInRange(0, 3))); }

    ModelNode* Make(ModelNode node) { return models_.emplace_back(std::make_unique<ModelNode>(std::move(node))).get(); }

    // The code that an operation returns or throws.
    template <class Operation>
    static HRESULT CodeOf(Operation operation) {
        try {
            operation();
            return S_OK;
        } catch (const HRX& failure) {
            return failure.Code();
        }
    }

    void Create(Slot& slot, Slot&) {
        const WideString name = Word(), type = Word();
        slot.node.Create(name.c_str(), type.c_str());
        slot.model = Make({name, type, {}, nullptr, {}, {}});
    }

    void Copy(Slot& to, Slot& from) {
        to.node = from.node;
        to.model = from.model;
    }

    void Close(Slot& slot, Slot&) {
        slot.node.Close();
        slot.model = nullptr;
    }

    void Move(Slot& to, Slot& from) {
        to.node = std::move(from.node);
        // Taking the same handle changes nothing.
        if (to.model != from.model) to.model = std::exchange(from.model, nullptr);
    }

    void Append(Slot& parent, Slot& child) {
        const HRESULT code = AcnAppendChild(parent.node.Handle(), child.node.Handle());
        const bool isAllowed = parent.model != nullptr && child.model != nullptr && child.model->parent == nullptr &&
                               !parent.model->IsAtOrBelow(child.model);
        REQUIRE(code == (isAllowed ? S_OK : E_INVALIDARG));
        if (isAllowed) {
            parent.model->children.push_back(child.model);
            child.model->parent = parent.model;
            child.model->pathAbove.clear();
        }
    }

    void Remove(Slot& parent, Slot& child) {
        const HRESULT code = AcnRemoveChild(parent.node.Handle(), child.node.Handle());
        const bool areThere = parent.model != nullptr && child.model != nullptr;
        const bool isChild = areThere && child.model->parent == parent.model;
        REQUIRE(code == (isChild ? S_OK : areThere ? NOT_FOUND : E_INVALIDARG));
        if (isChild) {
            std::erase(parent.model->children, child.model);
            child.model->parent = nullptr;
        }
    }

    void TakeChild(Slot& from, Slot& to) {
        const auto index = input_.ConsumeIntegralInRange<std::size_t>(0, 4);
        const bool isThere = from.model != nullptr && index < from.model->children.size();
        ModelNode* const model = isThere ? from.model->children[index] : nullptr;
        REQUIRE(CodeOf([&] { (void)from.node.GetChild(index); }) == (isThere ? S_OK : NOT_FOUND));
        to.node = from.node.FindChild(index);
        to.model = model;
    }

    void FindChild(Slot& from, Slot& to) {
        const WideString name = Word();
        ModelNode* const model = from.model != nullptr ? from.model->Find(name) : nullptr;
        to.node = from.node.FindChild(name.c_str());
        to.model = model;
    }

    void TakeParent(Slot& from, Slot& to) {
        ModelNode* const model = from.model != nullptr ? from.model->parent : nullptr;
        ACNode parent;
        const HRESULT code = CodeOf([&] { parent = from.node.GetParent(); });
        REQUIRE(code == (from.model == nullptr ? E_INVALIDARG : model == nullptr ? NOT_FOUND : S_OK));
        to.node = std::move(parent);
        to.model = model;
    }

    void Clone(Slot& from, Slot& to) {
        const auto depth = input_.ConsumeIntegralInRange<std::uint32_t>(0, 3);
        ACNode clone;
        const HRESULT code = CodeOf([&] { clone = from.node.Clone(depth, 0); });
        REQUIRE(code == (from.model != nullptr ? S_OK : E_INVALIDARG));
        if (from.model == nullptr || models_.size() > LargestModel) return;
        ModelNode* const model = CloneModel(*from.model, depth);
        model->pathAbove = from.model->parent != nullptr ? from.model->parent->Path() : from.model->pathAbove;
        to.node = std::move(clone);
        to.model = model;
    }

    ModelNode* CloneModel(const ModelNode& source, std::uint32_t depth) {
        ModelNode* const copy = Make({source.name, source.type, source.attributes, nullptr, {}, {}});
        if (depth == 0) return copy;
        for (const ModelNode* child : source.children) {
            copy->children.push_back(CloneModel(*child, depth - 1));
            copy->children.back()->parent = copy;
        }
        return copy;
    }

    void SetNumber(Slot& slot, Slot&) {
        const WideString name = Word();
        const auto value = input_.ConsumeIntegral<std::int64_t>();
        Store(slot, name, value, CodeOf([&] { slot.node.SetInt64(name.c_str(), value); }));
    }

    // Texts shorter and longer than a reader's first buffer.
    void SetText(Slot& slot, Slot&) {
        const WideString name = Word();
        const WideString text(input_.ConsumeIntegralInRange<std::size_t>(0, 300), u'x');
        Store(slot, name, text, CodeOf([&] { slot.node.SetText(name.c_str(), text.c_str(), MeasureText); }));
    }

    static void Store(Slot& slot, const WideString& name, Value value, HRESULT code) {
        REQUIRE(code == (slot.model != nullptr ? S_OK : E_INVALIDARG));
        if (slot.model == nullptr) return;
        auto& attributes = slot.model->attributes;
        const auto known = std::ranges::find(attributes, name, &Attribute::first);
        if (known == attributes.end()) {
            attributes.emplace_back(name, std::move(value));
        } else {
            known->second = std::move(value);
        }
    }

    // Follows a path of two elements from one node.
    void Search(Slot& from, Slot& to) {
        const WideString first = Word(), second = Word();
        ModelNode* model = from.model != nullptr ? from.model->Find(first) : nullptr;
        if (model != nullptr) model = model->Find(second);
        to.node = from.node.FindByPath(first + u"\\" + second, 0);
        to.model = model;
    }

    static void Compare(const Slot& slot) {
        REQUIRE(bool(slot.node) == (slot.model != nullptr));
        if (slot.model == nullptr) return;
        const ModelNode& model = *slot.model;
        REQUIRE(slot.node.GetName(0) == model.name && slot.node.GetType() == model.type);
        REQUIRE(slot.node.GetFullPath() == model.Path());
        REQUIRE(slot.node.GetChildCount() == model.children.size());
        WideString names;
        for (const auto& [name, value] : model.attributes) {
            names.append(name).push_back(u'\0');
            CompareValue(slot.node, name.c_str(), value);
        }
        REQUIRE(slot.node.GetAttributeNames() == names);
    }

    static void CompareValue(const ACNode& node, const WideChar* name, const Value& value) {
        if (const auto* const number = std::get_if<std::int64_t>(&value)) {
            REQUIRE(node.GetInt64(name) == *number);
        } else {
            REQUIRE(node.GetText(name) == std::get<WideString>(value));
        }
    }

    static constexpr std::size_t LargestModel = 2000;

    FuzzedDataProvider& input_;
    std::array<Slot, 6> slots_;
    std::vector<std::unique_ptr<ModelNode>> models_;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    Sequence(input).Run();
    REQUIRE(Fuzzing::OpenNodeHandles() == 0);
    return 0;
}
