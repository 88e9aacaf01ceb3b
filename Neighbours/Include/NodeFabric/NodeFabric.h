// The node store: trees of nodes with typed attributes, reached through counted handles.
//
// Every function gives a result code. A node has one handle value, however often it is looked up; each look-up counts
// one handle, which its receiver closes. An open handle keeps its node and the node's ancestors alive. Any thread may
// call any function at any time. Texts end in 0. On a null handle AcnGetAttribute, AcnGetChildByIndex and
// AcnGetChildByName give 0x80070490 (not found), every other function E_INVALIDARG; a null out pointer is E_POINTER.
// Without memory the code is E_OUTOFMEMORY. A function that fails stores nothing but a size and leaves all as it was.
//
// Buffers: a null buffer has no room. `*size` is the room on the way in and the size of the text or value on the way
// out. If it doesn't fit, the code is 0x8007007A and `*size` the room needed. Names and types count characters with the
// terminator, attributes count bytes.
#pragma once

#include "Platform/Types.h"

using AcnHandle = struct AcnNodeOpaque*;  // null is the empty handle
using AcnContext = struct AcnContextOpaque*;

// Receives a block of a dump. A failure ends the dump with that code.
using AcnSerializationCallback = Platform::HRESULT (*)(const void* data, std::uint32_t length, void* user);

// The types of attributes.
inline constexpr std::uint16_t AcnTypeText = 1;      // as 2
inline constexpr std::uint16_t AcnTypeWideText = 2;  // 16-bit characters with a terminator
inline constexpr std::uint16_t AcnTypeInt32 = 3;
inline constexpr std::uint16_t AcnTypeUInt32 = 4;
inline constexpr std::uint16_t AcnTypeInt64 = 6;
inline constexpr std::uint16_t AcnTypeBool = 7;  // one byte, 0 or 1

// The kinds of a node's name.
inline constexpr std::uint32_t AcnOwnName = 0;
inline constexpr std::uint32_t AcnFullPath = 2;  // a backslash before each element

inline constexpr std::uint32_t AcnWholeTree = 0x7FFFFFFF;  // the depth of a clone or a dump with every level

extern "C" {

// A new node without parent. Either text may be null and is then empty.
PLATFORM_EXPORT Platform::HRESULT AcnCreateNode(const Platform::WideChar* name, const Platform::WideChar* type,
                                                AcnHandle* out);
PLATFORM_EXPORT Platform::HRESULT AcnDuplicateNodeHandle(AcnHandle node, AcnHandle* out);
PLATFORM_EXPORT Platform::HRESULT AcnCloseNodeHandle(AcnHandle node);

// An independent copy down to `depth` levels below the node, 0 being the node alone. The copy has no parent, but its
// nodes go on reporting the original's full paths until the copy is put under a parent. `flags` is 0.
PLATFORM_EXPORT Platform::HRESULT AcnCloneNode(AcnHandle node, std::uint32_t depth, std::uint32_t flags,
                                               AcnHandle* out);

PLATFORM_EXPORT Platform::HRESULT AcnGetParent(AcnHandle node, AcnHandle* out);  // not found at a root
PLATFORM_EXPORT Platform::HRESULT AcnGetChildCount(AcnHandle node, std::uint64_t* out);
PLATFORM_EXPORT Platform::HRESULT AcnGetChildByIndex(AcnHandle node, std::uint64_t index, AcnHandle* out);
// The first of the children with that name, in constant time on average.
PLATFORM_EXPORT Platform::HRESULT AcnGetChildByName(AcnHandle node, const Platform::WideChar* name, AcnHandle* out);

// Another kind than AcnOwnName and AcnFullPath is E_INVALIDARG.
PLATFORM_EXPORT Platform::HRESULT AcnGetNodeName(AcnHandle node, std::uint32_t kind, Platform::WideChar* buffer,
                                                 std::uint32_t* size);
PLATFORM_EXPORT Platform::HRESULT AcnGetNodeType(AcnHandle node, Platform::WideChar* buffer, std::uint32_t* size);
// All names in the order in which they were first set, each ended by a 0, and a terminator behind them.
PLATFORM_EXPORT Platform::HRESULT AcnGetAttributeNames(AcnHandle node, Platform::WideChar* buffer, std::uint32_t* size);

// Reads an attribute as `*type`, or as it is stored if `type` is null, and reports the type of what it delivers. With
// the four optional arguments null it tells only whether the attribute is there; a buffer needs a size. Numbers convert
// into one another (3, 4, 6, 7) where the value fits, the two texts convert freely; anything else is 0x8007065D
// (datatype mismatch).
PLATFORM_EXPORT Platform::HRESULT AcnGetAttribute(AcnHandle node, const Platform::WideChar* name,
                                                  const std::uint16_t* type, void* buffer, std::uint32_t* size,
                                                  std::uint16_t* outType);
// Stores a copy of the value; an attribute of the same name is replaced in its place. E_INVALIDARG for an empty name,
// an unknown type, and bytes that are no value of the type. `size` counts bytes, a text's terminator among them.
PLATFORM_EXPORT Platform::HRESULT AcnSetAttribute(AcnHandle node, const Platform::WideChar* name, std::uint16_t type,
                                                  const void* value, std::uint32_t size);

// A dump: start (kind 1, or E_INVALIDARG; the flags change nothing), serialize at most once, finalize, close on every
// path. The text is UTF-8, well-formed XML inside an "<nr>" element, ended by a 0, and comes in blocks of 16 KiB. The
// callback may call the store. A tree that changes meanwhile is shown partly as it was and partly as it is; a clone
// stays in one state. A call out of order, or after a failure, is E_UNEXPECTED. `depth` is as for a clone.
PLATFORM_EXPORT Platform::HRESULT AcnStartSerialization(std::int32_t kind, std::uint32_t flags,
                                                        AcnSerializationCallback callback, void* user, AcnContext* out);
PLATFORM_EXPORT Platform::HRESULT AcnSerializeNodes(AcnContext context, const AcnHandle* nodes, std::uint32_t count,
                                                    std::uint32_t depth);
PLATFORM_EXPORT Platform::HRESULT AcnFinalizeSerialization(AcnContext context);
PLATFORM_EXPORT Platform::HRESULT AcnCloseSerializationContext(AcnContext context);
}
