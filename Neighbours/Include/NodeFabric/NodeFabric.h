// The node store: trees of nodes with typed attributes, accessed through counted handles.
//
// Handles. All look-ups of a node return the same handle value. Each look-up counts one handle, which the caller must
// close. An open handle keeps its node and the node's ancestors alive.
//
// Threads. Any thread may call any function at any time.
//
// Results. Every function returns a result code. On a null handle, AcnGetAttribute, AcnGetChildByIndex and
// AcnGetChildByName return 0x80070490 (not found); every other function returns E_INVALIDARG. A null out pointer is
// E_POINTER. If memory runs out, the code is E_OUTOFMEMORY. A function that fails changes nothing and stores nothing
// except a required size.
//
// Texts end with a 0 character.
//
// Buffers. On input `*size` is the capacity of the buffer, on output the size of the text or value. If it does not fit,
// the code is 0x8007007A and `*size` is the capacity required. A null buffer has the capacity 0. Names and types are
// counted in characters including the terminator, attributes in bytes.
#pragma once

#include "Platform/Types.h"

using AcnHandle = struct AcnNodeOpaque*;  // null is the empty handle
using AcnContext = struct AcnContextOpaque*;

// Receives a block of a dump. A failure ends the dump with that code.
using AcnSerializationCallback = Platform::HRESULT (*)(const void* data, std::uint32_t length, void* user);

// The types of attributes.
inline constexpr std::uint16_t AcnTypeText = 1;      // the same as AcnTypeWideText
inline constexpr std::uint16_t AcnTypeWideText = 2;  // 16-bit characters including a terminator
inline constexpr std::uint16_t AcnTypeInt32 = 3;
inline constexpr std::uint16_t AcnTypeUInt32 = 4;
inline constexpr std::uint16_t AcnTypeInt64 = 6;
inline constexpr std::uint16_t AcnTypeBool = 7;  // one byte, 0 or 1

// The kinds of a node's name.
inline constexpr std::uint32_t AcnOwnName = 0;
inline constexpr std::uint32_t AcnFullPath = 2;  // a backslash before each element

inline constexpr std::uint32_t AcnWholeTree = 0x7FFFFFFF;  // the depth of a clone or a dump that includes every level

extern "C" {

// Creates a node that has no parent. A null name or type means an empty one.
PLATFORM_EXPORT Platform::HRESULT AcnCreateNode(const Platform::WideChar* name, const Platform::WideChar* type,
                                                AcnHandle* out);
// Counts one more handle to the node and stores it.
PLATFORM_EXPORT Platform::HRESULT AcnDuplicateNodeHandle(AcnHandle node, AcnHandle* out);
PLATFORM_EXPORT Platform::HRESULT AcnCloseNodeHandle(AcnHandle node);

// Creates an independent copy of the node and of `depth` levels below it; depth 0 copies only the node. The copy has no
// parent. Its nodes report the full paths of the originals until the copy is appended to a parent. `flags` must be 0.
PLATFORM_EXPORT Platform::HRESULT AcnCloneNode(AcnHandle node, std::uint32_t depth, std::uint32_t flags,
                                               AcnHandle* out);

PLATFORM_EXPORT Platform::HRESULT AcnGetParent(AcnHandle node, AcnHandle* out);  // 0x80070490 for a root
PLATFORM_EXPORT Platform::HRESULT AcnGetChildCount(AcnHandle node, std::uint64_t* out);
PLATFORM_EXPORT Platform::HRESULT AcnGetChildByIndex(AcnHandle node, std::uint64_t index, AcnHandle* out);
// Finds the first child that has the name, in constant time on average.
PLATFORM_EXPORT Platform::HRESULT AcnGetChildByName(AcnHandle node, const Platform::WideChar* name, AcnHandle* out);

// Reads the node's own name or its full path. E_INVALIDARG if `kind` is neither AcnOwnName nor AcnFullPath.
PLATFORM_EXPORT Platform::HRESULT AcnGetNodeName(AcnHandle node, std::uint32_t kind, Platform::WideChar* buffer,
                                                 std::uint32_t* size);
PLATFORM_EXPORT Platform::HRESULT AcnGetNodeType(AcnHandle node, Platform::WideChar* buffer, std::uint32_t* size);
// Reads all names in the order in which they were first set. Each name ends with a 0, and one more 0
// ends the list.
PLATFORM_EXPORT Platform::HRESULT AcnGetAttributeNames(AcnHandle node, Platform::WideChar* buffer, std::uint32_t* size);

// Reads an attribute as `*type`, or as its stored type if `type` is null, and stores the type of the result in
// `*outType`. `type`, `buffer`, `size` and `outType` may be null, but a buffer requires a size; if all four are null,
// the result code only reports whether the attribute exists. Numeric types (3, 4, 6, 7) convert into one another if the
// value fits, and the two text types convert freely. Any other conversion is 0x8007065D (datatype mismatch).
PLATFORM_EXPORT Platform::HRESULT AcnGetAttribute(AcnHandle node, const Platform::WideChar* name,
                                                  const std::uint16_t* type, void* buffer, std::uint32_t* size,
                                                  std::uint16_t* outType);
// Stores a copy of the value. An existing attribute of the name is replaced and keeps its position. Returns
// E_INVALIDARG for an empty name, an unknown type, or bytes that are not a value of the type. `size` is in bytes and
// includes the terminator of a text.
PLATFORM_EXPORT Platform::HRESULT AcnSetAttribute(AcnHandle node, const Platform::WideChar* name, std::uint16_t type,
                                                  const void* value, std::uint32_t size);

// Dump nodes as text. The order of calls is: start, serialize at most once, finalize, close. A context must be closed
// also after a failure. A call out of order, or after a failure, returns E_UNEXPECTED.
//
// `kind` must be 1, else E_INVALIDARG; `flags` has no effect; `depth` is as for a clone. The text is UTF-8, well-formed
// XML inside an "<nr>" element, and ends with a 0. It is passed to the callback in blocks of 16 KiB. The callback may
// call the store. If a tree changes during its dump, the text may show some nodes before the change and others after
// it; dump a clone for a consistent text.
PLATFORM_EXPORT Platform::HRESULT AcnStartSerialization(std::int32_t kind, std::uint32_t flags,
                                                        AcnSerializationCallback callback, void* user, AcnContext* out);
PLATFORM_EXPORT Platform::HRESULT AcnSerializeNodes(AcnContext context, const AcnHandle* nodes, std::uint32_t count,
                                                    std::uint32_t depth);
PLATFORM_EXPORT Platform::HRESULT AcnFinalizeSerialization(AcnContext context);
PLATFORM_EXPORT Platform::HRESULT AcnCloseSerializationContext(AcnContext context);
}
