// Each function of the platform, of the node store and of the broker that can fail, so that a sweep may choose the call
// that does. Functions whose failure nobody could answer (closing, freeing) and those that the tests replace are left
// out.
#include <dlfcn.h>

#include "ModuleBroker/ModuleBroker.h"
#include "Platform/Environment.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Messages.h"
#include "Platform/Modules.h"
#include "Platform/Process.h"
#include "Platform/Registry.h"
#include "Platform/Text.h"
#include "TestSupport.h"

namespace {

// The definition behind the one that this program puts in front.
template <class Function>
Function* NextDefinitionOf(Function* own) {
    Dl_info info{};
    dladdr(reinterpret_cast<void*>(own), &info);
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, info.dli_sname));
}

}  // namespace

// `code` is what the failure becomes, the last error among it.
#define MAY_FAIL(type, name, failure, code, parameters, arguments)                      \
    type name parameters {                                                              \
        static const auto next = NextDefinitionOf(&name);                               \
        if (!InjectedFault.Strikes(Fallible::Call, #name, code)) return next arguments; \
        Platform::SetLastError(static_cast<std::uint32_t>(code) & 0xFFFF);              \
        return failure;                                                                 \
    }
#define SYSTEM_MAY_FAIL(type, name, failure, error, parameters, arguments) \
    MAY_FAIL(type, name, failure, HResultFromWin32(error), parameters noexcept, arguments)
#define STORE_MAY_FAIL(name, parameters, arguments) \
    MAY_FAIL(HRESULT, name, MakeHResult(0x80041234), MakeHResult(0x80041234), parameters, arguments)

namespace Platform {

SYSTEM_MAY_FAIL(HANDLE, CreateFileW, INVALID_HANDLE_VALUE, ERROR_SHARING_VIOLATION,
                (const WideChar* path, DWORD access, DWORD sharing, void* security, DWORD disposition, DWORD attributes,
                 HANDLE templateFile),
                (path, access, sharing, security, disposition, attributes, templateFile))
SYSTEM_MAY_FAIL(BOOL, WriteFile, FALSE, ERROR_DISK_FULL,
                (HANDLE file, const void* data, DWORD size, DWORD* written, void* overlapped),
                (file, data, size, written, overlapped))
SYSTEM_MAY_FAIL(DWORD, GetFileSize, INVALID_FILE_SIZE, ERROR_IO_DEVICE, (HANDLE file, DWORD* high), (file, high))
SYSTEM_MAY_FAIL(BOOL, GetFileInformationByHandle, FALSE, ERROR_IO_DEVICE,
                (HANDLE file, BY_HANDLE_FILE_INFORMATION* information), (file, information))
SYSTEM_MAY_FAIL(BOOL, DuplicateHandle, FALSE, ERROR_TOO_MANY_OPEN_FILES,
                (HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target, DWORD access, BOOL inherit,
                 DWORD options),
                (sourceProcess, source, targetProcess, target, access, inherit, options))
SYSTEM_MAY_FAIL(DWORD, GetFileAttributesW, INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED, (const WideChar* path), (path))
SYSTEM_MAY_FAIL(BOOL, CreateDirectoryW, FALSE, ERROR_ACCESS_DENIED, (const WideChar* path, void* security),
                (path, security))
SYSTEM_MAY_FAIL(WideChar*, PathCombineW, nullptr, ERROR_FILENAME_EXCED_RANGE,
                (WideChar * result, const WideChar* base, const WideChar* rest), (result, base, rest))
SYSTEM_MAY_FAIL(DWORD, GetEnvironmentVariableW, 0, ERROR_NOT_ENOUGH_MEMORY,
                (const WideChar* name, WideChar* buffer, DWORD size), (name, buffer, size))
SYSTEM_MAY_FAIL(DWORD, ExpandEnvironmentStringsW, 0, ERROR_NOT_ENOUGH_MEMORY,
                (const WideChar* source, WideChar* buffer, DWORD size), (source, buffer, size))
SYSTEM_MAY_FAIL(DWORD, GetPrivateProfileStringW, 0, ERROR_ACCESS_DENIED,
                (const WideChar* section, const WideChar* key, const WideChar* defaultValue, WideChar* buffer,
                 DWORD size, const WideChar* path),
                (section, key, defaultValue, buffer, size, path))
SYSTEM_MAY_FAIL(BOOL, FileTimeToLocalFileTime, FALSE, ERROR_INVALID_PARAMETER, (const FILETIME* utc, FILETIME* local),
                (utc, local))
SYSTEM_MAY_FAIL(BOOL, FileTimeToSystemTime, FALSE, ERROR_INVALID_PARAMETER, (const FILETIME* time, SYSTEMTIME* fields),
                (time, fields))
SYSTEM_MAY_FAIL(BOOL, QueryPerformanceCounter, FALSE, ERROR_GEN_FAILURE, (std::int64_t * counter), (counter))
SYSTEM_MAY_FAIL(BOOL, QueryPerformanceFrequency, FALSE, ERROR_GEN_FAILURE, (std::int64_t * frequency), (frequency))
SYSTEM_MAY_FAIL(DWORD, FormatMessageW, 0, ERROR_MR_MID_NOT_FOUND,
                (DWORD flags, const void* source, DWORD code, DWORD language, WideChar* buffer, DWORD size,
                 void* arguments),
                (flags, source, code, language, buffer, size, arguments))
SYSTEM_MAY_FAIL(HRESULT, CreateErrorInfo, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY, (ICreateErrorInfo * *result),
                (result))
SYSTEM_MAY_FAIL(HRESULT, SetErrorInfo, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY, (DWORD reserved, IErrorInfo* object),
                (reserved, object))
SYSTEM_MAY_FAIL(HRESULT, GetErrorInfo, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY, (DWORD reserved, IErrorInfo** object),
                (reserved, object))
SYSTEM_MAY_FAIL(BSTR, SysAllocStringLen, nullptr, ERROR_NOT_ENOUGH_MEMORY, (const WideChar* text, std::uint32_t length),
                (text, length))
SYSTEM_MAY_FAIL(DWORD, GetModuleFileNameW, 0, ERROR_ACCESS_DENIED, (HMODULE module, WideChar* path, DWORD size),
                (module, path, size))
SYSTEM_MAY_FAIL(BOOL, GetModuleHandleExW, FALSE, ERROR_MOD_NOT_FOUND,
                (DWORD flags, const WideChar* address, HMODULE* module), (flags, address, module))
SYSTEM_MAY_FAIL(HMODULE, GetModuleHandleW, nullptr, ERROR_MOD_NOT_FOUND, (const WideChar* name), (name))
SYSTEM_MAY_FAIL(HMODULE, LoadLibraryExW, nullptr, ERROR_BAD_EXE_FORMAT,
                (const WideChar* path, HANDLE reserved, DWORD flags), (path, reserved, flags))
SYSTEM_MAY_FAIL(int, GetNumberFormatW, 0, ERROR_INSUFFICIENT_BUFFER,
                (DWORD locale, DWORD flags, const WideChar* number, const NUMBERFMTW* format, WideChar* buffer,
                 int size),
                (locale, flags, number, format, buffer, size))
SYSTEM_MAY_FAIL(int, MultiByteToWideChar, 0, ERROR_NO_UNICODE_TRANSLATION,
                (DWORD codePage, DWORD flags, const char* text, int length, WideChar* buffer, int size),
                (codePage, flags, text, length, buffer, size))
SYSTEM_MAY_FAIL(int, WideCharToMultiByte, 0, ERROR_NO_UNICODE_TRANSLATION,
                (DWORD codePage, DWORD flags, const WideChar* text, int length, char* buffer, int size,
                 const char* defaultChar, BOOL* usedDefault),
                (codePage, flags, text, length, buffer, size, defaultChar, usedDefault))
SYSTEM_MAY_FAIL(BOOL, OpenThreadToken, FALSE, ERROR_ACCESS_DENIED,
                (HANDLE thread, DWORD access, BOOL openAsSelf, HANDLE* token), (thread, access, openAsSelf, token))
SYSTEM_MAY_FAIL(BOOL, VerifyVersionInfoW, FALSE, ERROR_OLD_WIN_VERSION,
                (OSVERSIONINFOEXW * wanted, DWORD types, std::uint64_t mask), (wanted, types, mask))
SYSTEM_MAY_FAIL(std::uint16_t, RtlCaptureStackBackTrace, 0, ERROR_GEN_FAILURE,
                (DWORD framesToSkip, DWORD framesToCapture, void** frames, DWORD* hash),
                (framesToSkip, framesToCapture, frames, hash))
SYSTEM_MAY_FAIL(LONG, RegOpenKeyExW, LONG{ERROR_ACCESS_DENIED}, ERROR_ACCESS_DENIED,
                (HKEY root, const WideChar* path, DWORD options, DWORD access, HKEY* key),
                (root, path, options, access, key))
SYSTEM_MAY_FAIL(LONG, RegEnumValueW, LONG{ERROR_ACCESS_DENIED}, ERROR_ACCESS_DENIED,
                (HKEY key, DWORD index, WideChar* name, DWORD* nameLength, DWORD* reserved, DWORD* type,
                 std::uint8_t* data, DWORD* dataSize),
                (key, index, name, nameLength, reserved, type, data, dataSize))
SYSTEM_MAY_FAIL(LONG, RegQueryValueExW, LONG{ERROR_ACCESS_DENIED}, ERROR_ACCESS_DENIED,
                (HKEY key, const WideChar* name, DWORD* reserved, DWORD* type, std::uint8_t* data, DWORD* dataSize),
                (key, name, reserved, type, data, dataSize))

}  // namespace Platform

extern "C" {

STORE_MAY_FAIL(MBGetNamedInstance, (const WideChar* name, void* reserved, const GUID* iid, void** result),
               (name, reserved, iid, result))
STORE_MAY_FAIL(AcnCreateNode, (const WideChar* name, const WideChar* type, AcnHandle* out), (name, type, out))
STORE_MAY_FAIL(AcnDuplicateNodeHandle, (AcnHandle node, AcnHandle* out), (node, out))
STORE_MAY_FAIL(AcnCloneNode, (AcnHandle node, std::uint32_t depth, std::uint32_t flags, AcnHandle* out),
               (node, depth, flags, out))
STORE_MAY_FAIL(AcnGetParent, (AcnHandle node, AcnHandle* out), (node, out))
STORE_MAY_FAIL(AcnGetChildCount, (AcnHandle node, std::uint64_t* out), (node, out))
STORE_MAY_FAIL(AcnGetChildByIndex, (AcnHandle node, std::uint64_t index, AcnHandle* out), (node, index, out))
STORE_MAY_FAIL(AcnGetChildByName, (AcnHandle node, const WideChar* name, AcnHandle* out), (node, name, out))
STORE_MAY_FAIL(AcnGetNodeName, (AcnHandle node, std::uint32_t kind, WideChar* buffer, std::uint32_t* size),
               (node, kind, buffer, size))
STORE_MAY_FAIL(AcnGetNodeType, (AcnHandle node, WideChar* buffer, std::uint32_t* size), (node, buffer, size))
STORE_MAY_FAIL(AcnGetAttributeNames, (AcnHandle node, WideChar* buffer, std::uint32_t* size), (node, buffer, size))
STORE_MAY_FAIL(AcnGetAttribute,
               (AcnHandle node, const WideChar* name, const std::uint16_t* type, void* buffer, std::uint32_t* size,
                std::uint16_t* outType),
               (node, name, type, buffer, size, outType))
STORE_MAY_FAIL(AcnSetAttribute,
               (AcnHandle node, const WideChar* name, std::uint16_t type, const void* value, std::uint32_t size),
               (node, name, type, value, size))
STORE_MAY_FAIL(AcnStartSerialization,
               (std::int32_t kind, std::uint32_t flags, AcnSerializationCallback callback, void* user, AcnContext* out),
               (kind, flags, callback, user, out))
STORE_MAY_FAIL(AcnSerializeNodes,
               (AcnContext context, const AcnHandle* nodes, std::uint32_t count, std::uint32_t depth),
               (context, nodes, count, depth))
STORE_MAY_FAIL(AcnFinalizeSerialization, (AcnContext context), (context))
}
