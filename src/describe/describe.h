// Record descriptors: every field of a record by name, offset, kind and array shape, covering
// every byte of the record. They give the named-field JSON view of a record that the tool prints
// and reads and that the tests use to build and compare records.
#ifndef PROTOFIX_DESCRIBE_H
#define PROTOFIX_DESCRIBE_H

#include <json/json.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace protofix::describe {

enum class Kind {
    Int8,
    UInt8,
    Int16,
    UInt16,
    Int32,
    UInt32,
    Int64,
    UInt64,
    Float,     // IEEE single precision
    Double,    // IEEE double precision
    Text,      // a fixed char array: one element is the whole width
    Reserved,  // a reserved stretch of the record (named field of unsigned char)
    Padding,   // bytes the compiler inserts; unnamed in the record
    Record,    // a nested record, described by Field::record
};

struct Descriptor;

struct Field {
    std::string name;        // the record's field name; "" for padding
    std::size_t offset = 0;  // from the start of the record
    std::size_t size = 0;    // bytes of the whole field, every element included
    Kind kind = Kind::UInt8;
    std::size_t elementSize = 0;         // bytes of one element (a Text element: its full width)
    std::vector<std::size_t> shape;      // array dimensions, outermost first; empty for one value
    const Descriptor* record = nullptr;  // Kind::Record: the nested record
};

struct Descriptor {
    std::string name;           // the record's type name, "KZDEV_ALARMIN_CFG"
    std::size_t size = 0;       // sizeof the record
    std::vector<Field> fields;  // in offset order; fields and padding cover every byte once
};

// Every record that has a descriptor, and one by its type name (null when there is none).
const std::vector<const Descriptor*>& AllDescriptors();
const Descriptor* FindDescriptor(std::string_view recordName);

// How the view shows a time section (tagKZ_TSECT): its seven numbers as an object, or the text
// "1 08:00:00-18:00:00" (flag, begin and end) that the device's tables use.
enum class TimeSections { Raw, Text };

// The named-field view: {"enable":1,"sensorType":0,"timeSections":[[{"enable":1,...}]]}.
// Integers are JSON integers (unsigned fields as UInt); floating-point fields are JSON reals; texts are strings read up to the first NUL
// and never past their width; arrays are arrays, nested by dimension; nested records are objects.
// Padding is left out, and so is a reserved stretch whose bytes are all zero (otherwise it is an
// array of its byte values).
Json::Value ToJson(const Descriptor& descriptor, const void* record,
                   TimeSections timeSections = TimeSections::Raw);

// Writes the fields that the view names into the record; the others keep their bytes. False, with
// the field's path and what is wrong in error, for an unknown field, a value of the wrong kind, a
// number out of the field's range, a text longer than its field or holding a NUL byte, or an array
// longer than its shape; the record is then unchanged. The path is "interfaces[1].name", or the
// record's name when the view itself is not an object. A text may fill its whole width with no
// NUL, as the record allows; a shorter one is followed by zero bytes to the end of its width. An
// array shorter than its shape writes its leading elements and leaves the rest. A time section is
// read from either of its forms.
bool FromJson(const Descriptor& descriptor, const Json::Value& view, void* record,
              std::string& error);

// Size of a section's record as sections.def names it; 0 for the text-only sections (void).
// Inline: an explicit specialization is otherwise one definition per translation unit.
template <class Record>
inline constexpr std::size_t kRecordSize = sizeof(Record);
template <>
inline constexpr std::size_t kRecordSize<void> = 0;

}  // namespace protofix::describe

#endif
