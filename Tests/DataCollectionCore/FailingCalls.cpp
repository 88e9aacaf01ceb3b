// Replaces each function of the platform, of the node store and of the broker that can fail, so that a sweep can choose
// the call that fails. Functions whose failure no caller could handle (closing, freeing) and those that the tests
// replace elsewhere are not in the list.
#include <tuple>

#include "ModuleBroker/ModuleBroker.h"
#include "Platform/Environment.h"
#include "Platform/Errors.h"
#include "Platform/Files.h"
#include "Platform/Messages.h"
#include "Platform/Modules.h"
#include "Platform/Process.h"
#include "Platform/Registry.h"
#include "Platform/Text.h"
#include "Support/NextDefinition.h"
#include "TestSupport.h"

namespace {

// The types of a declared function.
template <class Function>
struct Signature;
template <class R, class... Arguments, bool NeverThrows>
struct Signature<R(Arguments...) noexcept(NeverThrows)> {
    using Result = R;
    template <std::size_t I>
    using Argument = std::tuple_element_t<I, std::tuple<Arguments...>>;
};

}  // namespace

// The parameters of a function, and their names.
#define PARAMETER(name, i) Signature<decltype(name)>::Argument<i> a##i
#define PARAMETERS_1(name) PARAMETER(name, 0)
#define PARAMETERS_2(name) PARAMETERS_1(name), PARAMETER(name, 1)
#define PARAMETERS_3(name) PARAMETERS_2(name), PARAMETER(name, 2)
#define PARAMETERS_4(name) PARAMETERS_3(name), PARAMETER(name, 3)
#define PARAMETERS_5(name) PARAMETERS_4(name), PARAMETER(name, 4)
#define PARAMETERS_6(name) PARAMETERS_5(name), PARAMETER(name, 5)
#define PARAMETERS_7(name) PARAMETERS_6(name), PARAMETER(name, 6)
#define PARAMETERS_8(name) PARAMETERS_7(name), PARAMETER(name, 7)
#define NAMES_1 a0
#define NAMES_2 NAMES_1, a1
#define NAMES_3 NAMES_2, a2
#define NAMES_4 NAMES_3, a3
#define NAMES_5 NAMES_4, a4
#define NAMES_6 NAMES_5, a5
#define NAMES_7 NAMES_6, a6
#define NAMES_8 NAMES_7, a7

// A function of `count` parameters, the value that it returns when it fails, and the `code` of that failure, which also
// sets the last error.
#define MAY_FAIL(count, name, failure, code, specifier)                                      \
    Signature<decltype(name)>::Result name(PARAMETERS_##count(name)) specifier {             \
        static const auto next = NextDefinitionOf(&name, #name);                             \
        if (!InjectedFault.Strikes(Fallible::Call, #name, code)) return next(NAMES_##count); \
        Platform::SetLastError(static_cast<std::uint32_t>(code) & 0xFFFF);                   \
        return failure;                                                                      \
    }
#define SYSTEM_MAY_FAIL(count, name, failure, error) MAY_FAIL(count, name, failure, HResultFromWin32(error), noexcept)
#define STORE_MAY_FAIL(count, name) MAY_FAIL(count, name, MakeHResult(0x80041234), MakeHResult(0x80041234), )

namespace Platform {

SYSTEM_MAY_FAIL(7, CreateFileW, INVALID_HANDLE_VALUE, InjectedFault.openError)
SYSTEM_MAY_FAIL(5, WriteFile, FALSE, ERROR_DISK_FULL)
SYSTEM_MAY_FAIL(2, GetFileSize, INVALID_FILE_SIZE, ERROR_IO_DEVICE)
SYSTEM_MAY_FAIL(2, GetFileInformationByHandle, FALSE, ERROR_IO_DEVICE)
SYSTEM_MAY_FAIL(7, DuplicateHandle, FALSE, ERROR_TOO_MANY_OPEN_FILES)
SYSTEM_MAY_FAIL(1, GetFileAttributesW, INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED)
SYSTEM_MAY_FAIL(2, CreateDirectoryW, FALSE, ERROR_ACCESS_DENIED)
SYSTEM_MAY_FAIL(3, GetEnvironmentVariableW, 0, ERROR_NOT_ENOUGH_MEMORY)
SYSTEM_MAY_FAIL(3, ExpandEnvironmentStringsW, 0, ERROR_NOT_ENOUGH_MEMORY)
SYSTEM_MAY_FAIL(6, GetPrivateProfileStringW, 0, InjectedFault.openError)
SYSTEM_MAY_FAIL(2, FileTimeToLocalFileTime, FALSE, ERROR_INVALID_PARAMETER)
SYSTEM_MAY_FAIL(2, FileTimeToSystemTime, FALSE, ERROR_INVALID_PARAMETER)
SYSTEM_MAY_FAIL(1, QueryPerformanceCounter, FALSE, ERROR_GEN_FAILURE)
SYSTEM_MAY_FAIL(1, QueryPerformanceFrequency, FALSE, ERROR_GEN_FAILURE)
SYSTEM_MAY_FAIL(7, FormatMessageW, 0, ERROR_MR_MID_NOT_FOUND)
SYSTEM_MAY_FAIL(1, CreateErrorInfo, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY)
SYSTEM_MAY_FAIL(2, SetErrorInfo, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY)
SYSTEM_MAY_FAIL(2, GetErrorInfo, E_OUTOFMEMORY, ERROR_NOT_ENOUGH_MEMORY)
SYSTEM_MAY_FAIL(2, SysAllocStringLen, nullptr, ERROR_NOT_ENOUGH_MEMORY)
SYSTEM_MAY_FAIL(3, GetModuleFileNameW, 0, ERROR_ACCESS_DENIED)
SYSTEM_MAY_FAIL(3, GetModuleHandleExW, FALSE, ERROR_MOD_NOT_FOUND)
SYSTEM_MAY_FAIL(1, GetModuleHandleW, nullptr, ERROR_MOD_NOT_FOUND)
SYSTEM_MAY_FAIL(3, LoadLibraryExW, nullptr, ERROR_BAD_EXE_FORMAT)
SYSTEM_MAY_FAIL(6, GetNumberFormatW, 0, ERROR_INSUFFICIENT_BUFFER)
SYSTEM_MAY_FAIL(6, MultiByteToWideChar, 0, ERROR_NO_UNICODE_TRANSLATION)
SYSTEM_MAY_FAIL(8, WideCharToMultiByte, 0, ERROR_NO_UNICODE_TRANSLATION)
SYSTEM_MAY_FAIL(4, OpenThreadToken, FALSE, ERROR_ACCESS_DENIED)
SYSTEM_MAY_FAIL(3, VerifyVersionInfoW, FALSE, ERROR_OLD_WIN_VERSION)
SYSTEM_MAY_FAIL(4, RtlCaptureStackBackTrace, 0, ERROR_GEN_FAILURE)
SYSTEM_MAY_FAIL(5, RegOpenKeyExW, LONG{ERROR_ACCESS_DENIED}, ERROR_ACCESS_DENIED)
SYSTEM_MAY_FAIL(8, RegEnumValueW, LONG{ERROR_ACCESS_DENIED}, ERROR_ACCESS_DENIED)
SYSTEM_MAY_FAIL(6, RegQueryValueExW, LONG{ERROR_ACCESS_DENIED}, ERROR_ACCESS_DENIED)

}  // namespace Platform

extern "C" {

STORE_MAY_FAIL(4, MBGetNamedInstance)
STORE_MAY_FAIL(3, AcnCreateNode)
STORE_MAY_FAIL(2, AcnDuplicateNodeHandle)
STORE_MAY_FAIL(4, AcnCloneNode)
STORE_MAY_FAIL(2, AcnGetParent)
STORE_MAY_FAIL(2, AcnGetChildCount)
STORE_MAY_FAIL(3, AcnGetChildByIndex)
STORE_MAY_FAIL(3, AcnGetChildByName)
STORE_MAY_FAIL(4, AcnGetNodeName)
STORE_MAY_FAIL(3, AcnGetNodeType)
STORE_MAY_FAIL(3, AcnGetAttributeNames)
STORE_MAY_FAIL(6, AcnGetAttribute)
STORE_MAY_FAIL(5, AcnSetAttribute)
STORE_MAY_FAIL(5, AcnStartSerialization)
STORE_MAY_FAIL(4, AcnSerializeNodes)
STORE_MAY_FAIL(1, AcnFinalizeSerialization)
}
