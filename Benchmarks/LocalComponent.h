// A component on the stack. It counts references but does not delete itself.
#pragma once

#include <atomic>

#include "Harbor/ComponentUnknown.h"

namespace Benchmarks {

template <class Interface>
class Local : public Interface {
public:
    std::uint32_t AddRef() override { return ++references_; }
    std::uint32_t Release() override { return --references_; }
    // There is only one interface, which every caller knows.
    Harbor::HRESULT QueryInterface(const Harbor::GUID*, void** result) override {
        AddRef();
        *result = static_cast<Interface*>(this);
        return Harbor::S_OK;
    }

private:
    std::atomic<std::uint32_t> references_{1};
};

}  // namespace Benchmarks
