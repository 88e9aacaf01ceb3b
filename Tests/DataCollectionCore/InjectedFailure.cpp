#include "InjectedFailure.h"

#include <dlfcn.h>

#include "ModuleBroker/ModuleBroker.h"
#include "NodeFabric/NodeFabric.h"
#include "Platform/Environment.h"
#include "Platform/ErrorObjects.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Messages.h"
#include "Platform/Modules.h"
#include "Platform/Process.h"
#include "Platform/Text.h"
#include "TestSupport.h"

namespace InjectedFailure {
namespace {

struct State {
    Source source = Source::None;
    int callsToFailure = 0;
    bool mayFail = false;
};
thread_local State Armed;

bool FailsNow(Source source) noexcept {
    return Armed.mayFail && Armed.source == source && Armed.callsToFailure > 0 && --Armed.callsToFailure == 0;
}

// The function that this program's own one stands in front of.
template <class Function>
Function* Behind(Function* own) noexcept {
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(own), &info);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, info.dli_sname));
}

}  // namespace

void Arm(Source source, int nth) noexcept {
    Armed = {source, nth};
    AllocationFails = nullptr;
    if (source == Source::Memory) AllocationFails = [] { return FailsNow(Source::Memory); };
}

bool HasHappened() noexcept {
    return Armed.callsToFailure == 0;
}

Scope::Scope(bool mayFail) noexcept : outside_(std::exchange(Armed.mayFail, mayFail)) {}

Scope::~Scope() {
    Armed.mayFail = outside_;
}

}  // namespace InjectedFailure

using namespace InjectedFailure;

#define MAY_FAIL(source, function, parameters, arguments)          \
    extern "C" HRESULT function parameters {                       \
        static const auto behind = Behind(&function);              \
        return FailsNow(Source::source) ? Code : behind arguments; \
    }

MAY_FAIL(Broker, MBGetNamedInstance, (const WideChar* name, void* reserved, const GUID* iid, void** result),
         (name, reserved, iid, result))
MAY_FAIL(Store, AcnCreateNode, (const WideChar* name, const WideChar* type, AcnHandle* out), (name, type, out))
MAY_FAIL(Store, AcnDuplicateNodeHandle, (AcnHandle node, AcnHandle* out), (node, out))
MAY_FAIL(Store, AcnCloneNode, (AcnHandle node, std::uint32_t depth, std::uint32_t flags, AcnHandle* out),
         (node, depth, flags, out))
MAY_FAIL(Store, AcnGetParent, (AcnHandle node, AcnHandle* out), (node, out))
MAY_FAIL(Store, AcnGetChildCount, (AcnHandle node, std::uint64_t* out), (node, out))
MAY_FAIL(Store, AcnGetChildByIndex, (AcnHandle node, std::uint64_t index, AcnHandle* out), (node, index, out))
MAY_FAIL(Store, AcnGetChildByName, (AcnHandle node, const WideChar* name, AcnHandle* out), (node, name, out))
MAY_FAIL(Store, AcnGetNodeName, (AcnHandle node, std::uint32_t kind, WideChar* buffer, std::uint32_t* size),
         (node, kind, buffer, size))
MAY_FAIL(Store, AcnGetNodeType, (AcnHandle node, WideChar* buffer, std::uint32_t* size), (node, buffer, size))
MAY_FAIL(Store, AcnGetAttributeNames, (AcnHandle node, WideChar* buffer, std::uint32_t* size), (node, buffer, size))
MAY_FAIL(Store, AcnGetAttribute,
         (AcnHandle node, const WideChar* name, const std::uint16_t* type, void* buffer, std::uint32_t* size,
          std::uint16_t* outType),
         (node, name, type, buffer, size, outType))
MAY_FAIL(Store, AcnSetAttribute,
         (AcnHandle node, const WideChar* name, std::uint16_t type, const void* value, std::uint32_t size),
         (node, name, type, value, size))
MAY_FAIL(Store, AcnStartSerialization,
         (std::int32_t kind, std::uint32_t flags, AcnSerializationCallback callback, void* user, AcnContext* out),
         (kind, flags, callback, user, out))
MAY_FAIL(Store, AcnSerializeNodes,
         (AcnContext context, const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth),
         (context, nodes, count, depth))
MAY_FAIL(Store, AcnFinalizeSerialization, (AcnContext context), (context))

namespace Platform {

// `failed` is what the function gives when it fails.
#define PLATFORM_MAY_FAIL(result, function, parameters, arguments, failed) \
    result function parameters noexcept {                                  \
        static const auto behind = Behind<result parameters>(&function);   \
        if (!FailsNow(Source::Platform)) return behind arguments;          \
        SetLastError(LastError);                                           \
        return failed;                                                     \
    }

PLATFORM_MAY_FAIL(HANDLE, CreateFileW,
                  (const WideChar* path, DWORD access, DWORD sharing, void* security, DWORD disposition, DWORD flags,
                   HANDLE model),
                  (path, access, sharing, security, disposition, flags, model), INVALID_HANDLE_VALUE)
PLATFORM_MAY_FAIL(BOOL, WriteFile, (HANDLE file, const void* data, DWORD size, DWORD* written, void* overlapped),
                  (file, data, size, written, overlapped), FALSE)
PLATFORM_MAY_FAIL(DWORD, GetFileSize, (HANDLE file, DWORD* high), (file, high), INVALID_FILE_SIZE)
PLATFORM_MAY_FAIL(BOOL, GetFileInformationByHandle, (HANDLE file, BY_HANDLE_FILE_INFORMATION* information),
                  (file, information), FALSE)
PLATFORM_MAY_FAIL(BOOL, DuplicateHandle,
                  (HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD access,
                   BOOL inherit, DWORD options),
                  (sourceProcess, source, targetProcess, target, access, inherit, options), FALSE)
PLATFORM_MAY_FAIL(DWORD, GetFileAttributesW, (const WideChar* path), (path), INVALID_FILE_ATTRIBUTES)
PLATFORM_MAY_FAIL(BOOL, CreateDirectoryW, (const WideChar* path, void* security), (path, security), FALSE)
PLATFORM_MAY_FAIL(WideChar*, PathCombineW, (WideChar * result, const WideChar* base, const WideChar* rest),
                  (result, base, rest), nullptr)
PLATFORM_MAY_FAIL(DWORD, FormatMessageW,
                  (DWORD flags, const void* source, DWORD code, DWORD language, WideChar* buffer, DWORD size,
                   void* arguments),
                  (flags, source, code, language, buffer, size, arguments), 0)
PLATFORM_MAY_FAIL(BOOL, GetModuleHandleExW, (DWORD flags, const WideChar* address, HMODULE* module),
                  (flags, address, module), FALSE)
PLATFORM_MAY_FAIL(DWORD, GetModuleFileNameW, (HMODULE module, WideChar* path, DWORD size), (module, path, size), 0)
PLATFORM_MAY_FAIL(HMODULE, LoadLibraryExW, (const WideChar* path, HANDLE reserved, DWORD flags),
                  (path, reserved, flags), nullptr)
PLATFORM_MAY_FAIL(HMODULE, GetModuleHandleW, (const WideChar* name), (name), nullptr)
PLATFORM_MAY_FAIL(DWORD, GetEnvironmentVariableW, (const WideChar* name, WideChar* buffer, DWORD size),
                  (name, buffer, size), 0)
PLATFORM_MAY_FAIL(DWORD, GetPrivateProfileStringW,
                  (const WideChar* section, const WideChar* key, const WideChar* defaultValue, WideChar* buffer,
                   DWORD size, const WideChar* path),
                  (section, key, defaultValue, buffer, size, path), 0)
PLATFORM_MAY_FAIL(DWORD, ExpandEnvironmentStringsW, (const WideChar* source, WideChar* buffer, DWORD size),
                  (source, buffer, size), 0)
PLATFORM_MAY_FAIL(BOOL, OpenThreadToken, (HANDLE thread, DWORD access, BOOL openAsSelf, HANDLE* token),
                  (thread, access, openAsSelf, token), FALSE)
PLATFORM_MAY_FAIL(BSTR, SysAllocStringLen, (const WideChar* text, std::uint32_t length), (text, length), nullptr)
PLATFORM_MAY_FAIL(HRESULT, CreateErrorInfo, (ICreateErrorInfo * *result), (result), Harbor::E_OUTOFMEMORY)
PLATFORM_MAY_FAIL(HRESULT, SetErrorInfo, (DWORD reserved, IErrorInfo* object), (reserved, object), Harbor::E_FAIL)
PLATFORM_MAY_FAIL(HRESULT, GetErrorInfo, (DWORD reserved, IErrorInfo** object), (reserved, object), Harbor::S_FALSE)
PLATFORM_MAY_FAIL(std::uint16_t, RtlCaptureStackBackTrace,
                  (DWORD framesToSkip, DWORD framesToCapture, void** frames, DWORD* hash),
                  (framesToSkip, framesToCapture, frames, hash), 0)
PLATFORM_MAY_FAIL(int, MultiByteToWideChar,
                  (DWORD codePage, DWORD flags, const char* text, int length, WideChar* buffer, int size),
                  (codePage, flags, text, length, buffer, size), 0)
PLATFORM_MAY_FAIL(int, WideCharToMultiByte,
                  (DWORD codePage, DWORD flags, const WideChar* text, int length, char* buffer, int size,
                   const char* defaultChar, BOOL* usedDefault),
                  (codePage, flags, text, length, buffer, size, defaultChar, usedDefault), 0)
PLATFORM_MAY_FAIL(int, GetNumberFormatW,
                  (DWORD locale, DWORD flags, const WideChar* number, const NUMBERFMTW* format, WideChar* buffer,
                   int size),
                  (locale, flags, number, format, buffer, size), 0)
PLATFORM_MAY_FAIL(BOOL, FileTimeToLocalFileTime, (const FILETIME* utc, FILETIME* local), (utc, local), FALSE)
PLATFORM_MAY_FAIL(BOOL, FileTimeToSystemTime, (const FILETIME* time, SYSTEMTIME* fields), (time, fields), FALSE)
PLATFORM_MAY_FAIL(BOOL, QueryPerformanceCounter, (std::int64_t * counter), (counter), FALSE)
PLATFORM_MAY_FAIL(BOOL, QueryPerformanceFrequency, (std::int64_t * frequency), (frequency), FALSE)

}  // namespace Platform
