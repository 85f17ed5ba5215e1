// The binary interface between the component and its host: the call block and the value records that travel with every
// message, the host's service tables behind the block's pointers, and the numbers that both sides agree on. Everything
// is a plain structure of natural words and function pointers; neither side owns more than is said at each entry.
//
// The call block and the value record are laid out by the host platform, in natural words: a 32-bit host sees exactly
// the byte offsets asserted below. The service tables are this component's own; each begins with its size and version,
// and the component refuses every message whose tables differ from what it was built with.
//
// Text crosses as UTF-32 with a length, without a terminator. A function that fills a text or byte buffer copies at
// most `capacity` units and answers the whole length, so that a second call with room for all gets the rest.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32) && !defined(_WIN64)
#define TABULIX_CALL __stdcall
#else
#define TABULIX_CALL
#endif

#if defined(_WIN32)
#define TABULIX_EXPORT __declspec(dllexport)
#else
#define TABULIX_EXPORT __attribute__((visibility("default")))
#endif

namespace rubrica::host {

// A natural word: as wide as a pointer of the host.
using Word = std::uintptr_t;
// Handles are the host's; 0 is none.
using FieldHandle = Word;
using ListHandle = Word;
using ObjectHandle = Word;

// ---- Numbers ------------------------------------------------------------------------------------------------------

// Kinds of host values, parameters and table rows.
namespace kind {
inline constexpr std::int32_t none = 20, character = 21, boolean = 22, date = 23, number = 25, integer = 26,
                              binary = 28, list = 29, constant = 35, row = 36, object = 37, objectReference = 38;
}

// Subtypes of a date value: 0 to 2 hold no time, 6 holds no date.
namespace datesubtype {
inline constexpr std::int32_t date1900 = 0, date1980 = 1, date2000 = 2, dateTime = 4, time = 6;
}

// The host's booleans. 0 is an unset one.
inline constexpr std::int32_t kHostFalse = 1, kHostTrue = 2;

// The decimal places code of a floating number.
inline constexpr std::int32_t kFloatingPlaces = 31;

// Flags in the tables of methods, parameters and properties.
inline constexpr std::int32_t kParameterOptional = 0x4000, kParameterByReference = 0x200000;
inline constexpr std::int32_t kPropertyIsConstant = 0x40000;

// The length of a character column without a limit that matters.
inline constexpr std::int32_t kLongTextLength = 10000000;

// How much of a string resource a host reads, in characters; the rest of a longer text is left out.
inline constexpr std::uint32_t kMaxResourceText = 255;

// Object classes: CallBlock::classId, and what ObjectTable::create takes.
namespace classid {
inline constexpr std::uint32_t workbook = 1002, worksheet = 1003, cell = 1004, font = 1005, format = 1006;
}

// Messages. Numbers below getLibraryName are the host's own and go to its default handler.
namespace message {
inline constexpr std::uint32_t getLibraryName = 0x00010000, getConstantPrefix = 0x00030000, getProperties = 0x00040000,
                               getConstants = 0x00060000, getMethods = 0x00070000, setProperty = 0x00080000,
                               connect = 0x00090000, disconnect = 0x000A0000, callMethod = 0x000C0000,
                               releaseResults = 0x000D0000, construct = 0x000E0000, destruct = 0x000F0000,
                               canAssignProperty = 0x00120000, getProperty = 0x00130000, getVersion = 0x002E0000,
                               featureQuery = 0x00310000, getObjects = 0x00350000, getStaticMethods = 0x00360000,
                               copyObject = 0x00390000, listStrings = 0x00540000;
}

// Answers to connect and getVersion.
inline constexpr std::int32_t kConnectAnswer = 525, kComponentVersion = 0x00030055;

// ---- Value records ------------------------------------------------------------------------------------------------

// ValueRecord::flags.
inline constexpr std::uint8_t kRecordOwnedByComponent = 0x40, kRecordChanged = 0x04;

#pragma pack(push, 2)
// One value of a call. The host makes the parameters; a call that carries a method or property id but no parameters has
// one record with number 0 and field 0. The component adds the return value (number 0, a field,
// kRecordOwnedByComponent) at the end of the chain and frees it, with its field, when the host sends releaseResults.
struct ValueRecord {
  Word first;  // low 16 bits of the first record of a chain: the method or property id of the call
  Word creatorFlags;
  FieldHandle field;
  Word extra;
  std::uint8_t number;  // of the parameter, from 1; 0 is the return value
  std::uint8_t flags;
  ValueRecord* next;
};
#pragma pack(pop)

inline constexpr bool kHostIs32Bit = sizeof(void*) == 4;
static_assert(!kHostIs32Bit || (offsetof(ValueRecord, field) == 8 && offsetof(ValueRecord, number) == 16 &&
                                offsetof(ValueRecord, flags) == 17 && offsetof(ValueRecord, next) == 18));
static_assert(offsetof(ValueRecord, number) == 4 * sizeof(Word) && offsetof(ValueRecord, next) == 4 * sizeof(Word) + 2);

struct CallBlock;

// ---- Service tables -----------------------------------------------------------------------------------------------

inline constexpr std::uint32_t kTableVersion = 1;

// The first member of each table. `size` is sizeof the whole table, `version` kTableVersion.
struct TableHeader {
  std::uint32_t size;
  std::uint32_t version;
};

struct DateParts {
  std::int16_t year;
  std::uint8_t month, day, hour, minute, second, hundredths;
  // 1 where the value holds that part: the date; hours and minutes; seconds; hundredths.
  std::uint8_t dateSet, timeSet, secondsSet, hundredthsSet;
};

// Values. Reading converts as the host does and never fails: what cannot be converted reads as 0, 0.0 or empty text.
struct ValueTable {
  TableHeader header;
  // A new empty value that the component frees; `context` is CallBlock::context.
  FieldHandle(TABULIX_CALL* create)(Word context);
  void(TABULIX_CALL* destroy)(FieldHandle field);

  // The kind; `subtype` may be null.
  std::int32_t(TABULIX_CALL* type)(FieldHandle field, std::int32_t* subtype);
  std::int32_t(TABULIX_CALL* readInteger)(FieldHandle field);
  double(TABULIX_CALL* readNumber)(FieldHandle field);
  // The host's boolean. `succeeded` (may be null) becomes 1 when the field is a boolean that is set, or a whole number
  // or constant of value 0 or 1; otherwise 0.
  std::int32_t(TABULIX_CALL* readBoolean)(FieldHandle field, std::int32_t* succeeded);
  std::size_t(TABULIX_CALL* readText)(FieldHandle field, char32_t* buffer, std::size_t capacity);
  void(TABULIX_CALL* readDate)(FieldHandle field, DateParts* parts);
  std::size_t(TABULIX_CALL* readBinary)(FieldHandle field, void* buffer, std::size_t capacity);

  void(TABULIX_CALL* writeInteger)(FieldHandle field, std::int32_t value);
  void(TABULIX_CALL* writeNumber)(FieldHandle field, double value, std::int32_t decimalPlaces);
  // Stores the code as it stands.
  void(TABULIX_CALL* writeBoolean)(FieldHandle field, std::int32_t code);
  void(TABULIX_CALL* writeText)(FieldHandle field, const char32_t* text, std::size_t length);
  void(TABULIX_CALL* writeDate)(FieldHandle field, const DateParts* parts, std::int32_t subtype);
  void(TABULIX_CALL* writeBinary)(FieldHandle field, const void* data, std::size_t size);
  // The list becomes the host's.
  void(TABULIX_CALL* writeList)(FieldHandle field, ListHandle list);
  // The object behind the handle: by value (kind object), or a reference to it (kind objectReference).
  void(TABULIX_CALL* writeObject)(FieldHandle field, ObjectHandle object);
  void(TABULIX_CALL* writeReference)(FieldHandle field, ObjectHandle object);
  // A constant by its full name ("kXLColorRed"), which the host resolves. An unknown name leaves the value empty.
  void(TABULIX_CALL* writeConstant)(FieldHandle field, const char32_t* name, std::size_t length);
};

// Lists and rows. Rows and columns count from 1.
struct ListTable {
  TableHeader header;
  // The list or row that a field holds, borrowed from the field; 0 when it holds none.
  ListHandle(TABULIX_CALL* fromField)(FieldHandle field);
  // A new list without columns, owned by the component until writeList hands it over or destroy ends it.
  ListHandle(TABULIX_CALL* create)(Word context);
  void(TABULIX_CALL* destroy)(ListHandle list);
  std::int32_t(TABULIX_CALL* rowCount)(ListHandle list);
  std::int16_t(TABULIX_CALL* columnCount)(ListHandle list);
  // The value at a place, borrowed: valid until the list gets a row or column, or ends. 0 outside the list.
  FieldHandle(TABULIX_CALL* cell)(ListHandle list, std::int32_t row, std::int16_t column);
  // As cell, for writing: what is written to the field is converted to the column's kind and stands in the list.
  FieldHandle(TABULIX_CALL* bindCell)(ListHandle list, std::int32_t row, std::int16_t column);
  std::size_t(TABULIX_CALL* columnName)(ListHandle list, std::int16_t column, char32_t* buffer, std::size_t capacity);
  // The three out arguments must not be null; all become 0 outside the list.
  void(TABULIX_CALL* columnType)(ListHandle list, std::int16_t column, std::int32_t* type, std::int32_t* subtype,
                                 std::int32_t* length);
  // Answers 1, or 0 when the list refuses.
  std::int32_t(TABULIX_CALL* addColumn)(ListHandle list, std::int32_t type, std::int32_t subtype, std::int32_t length,
                                        const char32_t* name, std::size_t nameLength);
  // Answers the number of the new row, 0 when the list refuses.
  std::int32_t(TABULIX_CALL* addRow)(ListHandle list);
};

// Objects. A handle means an instance of one of the component's classes.
struct ObjectTable {
  TableHeader header;
  // A new instance of class 1003 to 1006. The host has sent `construct` for the answered handle before this returns;
  // it destroys the instance when no field holds it any more. 0 on failure.
  ObjectHandle(TABULIX_CALL* create)(Word context, std::uint32_t classId);
  // The instance behind a field of kind object, and behind one of kind objectReference; 0 when there is none.
  ObjectHandle(TABULIX_CALL* ofObject)(FieldHandle field);
  ObjectHandle(TABULIX_CALL* ofReference)(FieldHandle field);
  // The handle under which the host sends messages for the instance; a handle unknown to the host is answered as it is.
  ObjectHandle(TABULIX_CALL* canonical)(ObjectHandle object);
  // Calls a method that the instance, or code that overrides it, has. The values stay the component's. Answers 1 when
  // the method was found. An instance that is gone answers 0 and harms nothing.
  std::int32_t(TABULIX_CALL* callMethod)(Word context, ObjectHandle object, const char32_t* name, std::size_t length,
                                         const FieldHandle* parameters, std::uint32_t count);
};

// String resources of a module.
struct ResourceTable {
  TableHeader header;
  // Copies the text of a string resource of `module` (CallBlock::module), at most `capacity` characters, and answers
  // how many it copied: 0 for an id without text. `capacity` is kMaxResourceText at most.
  std::uint32_t(TABULIX_CALL* readString)(Word module, std::uint32_t id, char32_t* buffer, std::uint32_t capacity);
  // Takes one text of `listStrings`; the message's two arguments tell the host where it belongs.
  void(TABULIX_CALL* collectString)(Word wParam, Word lParam, std::uint32_t id, const char32_t* text,
                                    std::size_t length);
};

// Settings and expressions of the host.
struct SystemTable {
  TableHeader header;
  // A host option, named by three characters: a hyphen, then the high and the low byte of its code.
  std::int32_t(TABULIX_CALL* option)(Word context, const char32_t* name, std::size_t length);
  // Evaluates an expression into a field of the component's. Answers 1 on success.
  std::int32_t(TABULIX_CALL* evaluate)(Word context, const char32_t* expression, std::size_t length,
                                       FieldHandle result);
};

// What becomes of messages that are not the component's.
struct HandlerTable {
  TableHeader header;
  std::int32_t(TABULIX_CALL* defaultHandler)(Word window, std::uint32_t messageNumber, Word wParam, Word lParam,
                                             CallBlock* call);
};

// ---- The call block -----------------------------------------------------------------------------------------------

// Comes with every message; the component keeps no pointer into it beyond the message.
struct CallBlock {
  Word reserved0;
  Word classId;
  Word reserved8;
  Word groupId;  // first key of the component's object registry; 0 means any
  ValueRecord* values;
  Word reserved20;
  // The nine pointers: six service tables and three values of the host.
  const ValueTable* valueTable;
  const ListTable* listTable;
  const ObjectTable* objectTable;
  const ResourceTable* resourceTable;
  const SystemTable* systemTable;
  const HandlerTable* handlerTable;
  Word module;        // the loaded component, for ResourceTable::readString
  Word hostInstance;  // the host's own
  Word library;       // the host's own
  Word context;       // passed back where a service asks for it
  Word reserved64;
  Word hostWords[3];
};

static_assert(!kHostIs32Bit || (offsetof(CallBlock, classId) == 4 && offsetof(CallBlock, groupId) == 12 &&
                                offsetof(CallBlock, values) == 16 && offsetof(CallBlock, valueTable) == 24 &&
                                offsetof(CallBlock, library) == 56 && offsetof(CallBlock, context) == 60 &&
                                offsetof(CallBlock, hostWords) == 68 && sizeof(CallBlock) == 80));
static_assert(offsetof(CallBlock, classId) == sizeof(Word) && offsetof(CallBlock, hostWords) == 17 * sizeof(Word) &&
              sizeof(CallBlock) == 20 * sizeof(Word));

// What the component exports as "NVObjWndProc", and nothing else.
using ComponentProcedure = std::int32_t(TABULIX_CALL*)(Word window, std::uint32_t messageNumber, Word wParam,
                                                       Word lParam, CallBlock* call);

// copyObject: lParam points at one of these.
struct CopyHandles {
  ObjectHandle source;
  ObjectHandle destination;
};

}  // namespace rubrica::host
