#pragma once

// The text encoding converter: from one encoding to another, with exact counts of what was read and
// written. Offered are Mac Roman and UTF-16 in the machine's byte order, each into the other.

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned long ByteCount;
typedef const UInt8* ConstTextPtr;
typedef UInt8* TextPtr;

/// An encoding: its base in the low 16 bits, then 10 bits of variant and 4 of format.
typedef UInt32 TextEncoding;
typedef UInt32 TextEncodingBase;
typedef UInt32 TextEncodingVariant;
typedef UInt32 TextEncodingFormat;

enum { kTextEncodingMacRoman = 0, kTextEncodingUnicodeDefault = 256 };
enum { kTextEncodingDefaultVariant = 0, kTextEncodingDefaultFormat = 0 };

/// No converter between these two encodings.
static const OSStatus kTextUnsupportedEncodingErr = -8738;
/// The input ends within a character.
static const OSStatus kTECPartialCharErr = -8753;
/// The output has no room for all of the input.
static const OSStatus kTECOutputBufferFullStatus = -8785;

typedef struct TextEncodingConverter* TECObjectRef;

TextEncoding CreateTextEncoding(TextEncodingBase base, TextEncodingVariant variant,
                                TextEncodingFormat format);

/// Makes a converter, to be given to TECDisposeConverter. `converter` receives null on failure.
OSStatus TECCreateConverter(TECObjectRef* converter, TextEncoding from, TextEncoding to);

/// Converts whole characters as long as their result fits. The counts, in bytes, tell what was read
/// and written: the bytes written are the conversion of exactly the bytes read, whether the end was
/// reached (noErr), the room ran out or the input ends within a character; the caller can go on
/// from there. Input need not be aligned. What the target cannot express is written as a question
/// mark. Without a converter (null) nothing is read or written.
OSStatus TECConvertText(TECObjectRef converter, ConstTextPtr input, ByteCount inputLength,
                        ByteCount* actualInputLength, TextPtr output, ByteCount outputLength,
                        ByteCount* actualOutputLength);

/// Forgets what earlier conversions left behind.
OSStatus TECClearConverterContextInfo(TECObjectRef converter);

/// Frees a converter. Null is an error and does nothing.
OSStatus TECDisposeConverter(TECObjectRef converter);

#ifdef __cplusplus
}
#endif
