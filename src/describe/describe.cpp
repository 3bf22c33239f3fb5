// The named-field JSON view of a record, read and written through the record's descriptor.
#include "describe/describe.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

namespace protofix::describe {
namespace {

template <class T>
T Load(const unsigned char* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
void Store(unsigned char* at, T value) {
    std::memcpy(at, &value, sizeof value);
}

// Bytes between consecutive elements of dimension dim.
std::size_t Stride(const Field& field, std::size_t dim) {
    std::size_t stride = field.elementSize;
    for (std::size_t d = dim + 1; d < field.shape.size(); ++d) {
        stride *= field.shape[d];
    }
    return stride;
}

// ---- record to view

constexpr const char kTimeSectionRecord[] = "tagKZ_TSECT";
constexpr const char kTimeSectionText[] = "%d %02d:%02d:%02d-%02d:%02d:%02d";

bool IsTimeSection(const Field& field) {
    // Seven 32-bit numbers: the flag, then the begin and the end time of day.
    return field.kind == Kind::Record && field.record->name == kTimeSectionRecord &&
           field.elementSize == 7 * sizeof(std::int32_t);
}

Json::Value TimeSectionText(const unsigned char* at) {
    std::int32_t v[7];
    std::memcpy(v, at, sizeof v);
    char text[96];
    const int length = std::snprintf(text, sizeof text, kTimeSectionText, v[0], v[1], v[2], v[3],
                                     v[4], v[5], v[6]);
    // Seven ints need at most 86 characters: the text is never cut.
    return Json::Value(text, text + (length > 0 ? length : 0));
}

Json::Value ElementToJson(const Field& field, const unsigned char* at, TimeSections style) {
    if (style == TimeSections::Text && IsTimeSection(field)) return TimeSectionText(at);
    switch (field.kind) {
        case Kind::Int8: return Json::Value(static_cast<Json::Int>(Load<std::int8_t>(at)));
        case Kind::Int16: return Json::Value(static_cast<Json::Int>(Load<std::int16_t>(at)));
        case Kind::Int32: return Json::Value(static_cast<Json::Int>(Load<std::int32_t>(at)));
        case Kind::UInt8:
        case Kind::Reserved:
        case Kind::Padding: return Json::Value(static_cast<Json::UInt>(Load<std::uint8_t>(at)));
        case Kind::UInt16: return Json::Value(static_cast<Json::UInt>(Load<std::uint16_t>(at)));
        case Kind::UInt32: return Json::Value(static_cast<Json::UInt>(Load<std::uint32_t>(at)));
        case Kind::Int64: return Json::Value(static_cast<Json::Int64>(Load<std::int64_t>(at)));
        case Kind::UInt64: return Json::Value(static_cast<Json::UInt64>(Load<std::uint64_t>(at)));
        case Kind::Float: return Json::Value(static_cast<double>(Load<float>(at)));
        case Kind::Double: return Json::Value(Load<double>(at));
        case Kind::Text: {
            // Up to the first NUL, and never past the width: a full field has no NUL.
            const char* text = reinterpret_cast<const char*>(at);
            return Json::Value(text, std::find(text, text + field.elementSize, '\0'));
        }
        case Kind::Record: return ToJson(*field.record, at, style);
    }
    return Json::Value();
}

Json::Value FieldToJson(const Field& field, const unsigned char* at, std::size_t dim,
                        TimeSections style) {
    if (dim == field.shape.size()) {
        return ElementToJson(field, at, style);
    }
    Json::Value array(Json::arrayValue);
    const std::size_t stride = Stride(field, dim);
    for (std::size_t i = 0; i < field.shape[dim]; ++i) {
        array.append(FieldToJson(field, at + i * stride, dim + 1, style));
    }
    return array;
}

// ---- view to record

bool Fail(std::string& error, const std::string& where, const std::string& what) {
    error = where + ": " + what;
    return false;
}

struct Range {
    std::int64_t min;
    std::uint64_t max;
};

template <class T>
constexpr Range RangeOf() {
    return {static_cast<std::int64_t>(std::numeric_limits<T>::min()),
            static_cast<std::uint64_t>(std::numeric_limits<T>::max())};
}

Range IntegerRange(Kind kind) {
    switch (kind) {
        case Kind::Int8: return RangeOf<std::int8_t>();
        case Kind::Int16: return RangeOf<std::int16_t>();
        case Kind::Int32: return RangeOf<std::int32_t>();
        case Kind::UInt16: return RangeOf<std::uint16_t>();
        case Kind::UInt32: return RangeOf<std::uint32_t>();
        case Kind::Int64: return RangeOf<std::int64_t>();
        case Kind::UInt64: return RangeOf<std::uint64_t>();
        default: return RangeOf<std::uint8_t>();  // UInt8 and the bytes of a reserved stretch
    }
}

bool WriteInteger(Kind kind, const Json::Value& value, unsigned char* at, const std::string& path,
                  std::string& error) {
    // Only integers as the JSON text spells them: not 1.0, not true.
    if (value.type() != Json::intValue && value.type() != Json::uintValue) {
        return Fail(error, path, "expected an integer");
    }
    const Range range = IntegerRange(kind);
    const bool inRange =
        value.type() == Json::uintValue
            ? value.asUInt64() <= range.max
            : value.asInt64() >= range.min &&
                  (value.asInt64() < 0 || static_cast<std::uint64_t>(value.asInt64()) <= range.max);
    if (!inRange) {
        return Fail(error, path,
                    value.asString() + " out of range " + std::to_string(range.min) + ".." +
                        std::to_string(range.max));
    }
    // Two's complement bits of the value: each store below keeps the low bits of its width.
    const std::uint64_t number = value.type() == Json::uintValue
                                     ? value.asUInt64()
                                     : static_cast<std::uint64_t>(value.asInt64());
    switch (kind) {
        case Kind::Int8: Store(at, static_cast<std::int8_t>(number)); break;
        case Kind::Int16: Store(at, static_cast<std::int16_t>(number)); break;
        case Kind::Int32: Store(at, static_cast<std::int32_t>(number)); break;
        case Kind::UInt16: Store(at, static_cast<std::uint16_t>(number)); break;
        case Kind::UInt32: Store(at, static_cast<std::uint32_t>(number)); break;
        case Kind::Int64: Store(at, static_cast<std::int64_t>(number)); break;
        case Kind::UInt64: Store(at, number); break;
        default: Store(at, static_cast<std::uint8_t>(number)); break;
    }
    return true;
}

// A real number (an integer is taken as one); a float keeps the nearest single-precision value.
bool WriteReal(Kind kind, const Json::Value& value, unsigned char* at, const std::string& path,
               std::string& error) {
    if (!value.isNumeric() || value.isBool()) return Fail(error, path, "expected a number");
    const double number = value.asDouble();
    if (kind == Kind::Float) {
        if (std::isfinite(number) && std::fabs(number) > std::numeric_limits<float>::max()) {
            return Fail(error, path, value.asString() + " out of the range of a float");
        }
        Store(at, static_cast<float>(number));
    } else {
        Store(at, number);
    }
    return true;
}

// The text form of a time section: all seven numbers and nothing after them.
bool WriteTimeSectionText(const Json::Value& value, unsigned char* at, const std::string& path,
                          std::string& error) {
    std::int32_t v[7];
    int consumed = 0;
    const std::string text = value.asString();
    const int read = std::sscanf(text.c_str(), "%d %d:%d:%d-%d:%d:%d%n", &v[0], &v[1], &v[2], &v[3],
                                 &v[4], &v[5], &v[6], &consumed);
    if (read != 7 || static_cast<std::size_t>(consumed) != text.size()) {
        return Fail(error, path, "expected a time section \"FLAG HH:MM:SS-HH:MM:SS\"");
    }
    std::memcpy(at, v, sizeof v);
    return true;
}

// A text may fill the whole width with no NUL, as the record allows a full field; a shorter text
// is followed by zero bytes to the end of its width, so the view decides every byte of the field.
bool WriteText(const Field& field, const Json::Value& value, unsigned char* at,
               const std::string& path, std::string& error) {
    if (!value.isString()) {
        return Fail(error, path, "expected a string");
    }
    const std::string text = value.asString();
    if (text.size() > field.elementSize) {
        return Fail(error, path,
                    "text longer than " + std::to_string(field.elementSize) + " bytes");
    }
    if (text.find('\0') != std::string::npos) {
        return Fail(error, path, "text contains a NUL byte");
    }
    // A text as long as the field fills it with no NUL, as the record allows.
    std::copy(text.begin(), text.end(), at);
    std::fill(at + text.size(), at + field.elementSize, 0);
    return true;
}

bool WriteRecord(const Descriptor& descriptor, const Json::Value& view, unsigned char* record,
                 const std::string& path, std::string& error);

bool WriteField(const Field& field, const Json::Value& value, unsigned char* at, std::size_t dim,
                const std::string& path, std::string& error) {
    if (dim < field.shape.size()) {
        // Shorter than the shape: the elements after it keep their bytes.
        if (!value.isArray()) {
            return Fail(error, path, "expected an array");
        }
        if (value.size() > field.shape[dim]) {
            return Fail(error, path,
                        "array longer than " + std::to_string(field.shape[dim]) + " elements");
        }
        const std::size_t stride = Stride(field, dim);
        for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
            if (!WriteField(field, value[i], at + i * stride, dim + 1,
                            path + "[" + std::to_string(i) + "]", error)) {
                return false;
            }
        }
        return true;
    }
    switch (field.kind) {
        case Kind::Text: return WriteText(field, value, at, path, error);
        case Kind::Record:
            if (IsTimeSection(field) && value.isString()) {
                return WriteTimeSectionText(value, at, path, error);
            }
            return WriteRecord(*field.record, value, at, path, error);
        case Kind::Float:
        case Kind::Double: return WriteReal(field.kind, value, at, path, error);
        default: return WriteInteger(field.kind, value, at, path, error);
    }
}

const Field* FindField(const Descriptor& descriptor, const std::string& name) {
    for (const Field& field : descriptor.fields) {
        if (field.kind != Kind::Padding && field.name == name) {
            return &field;
        }
    }
    return nullptr;
}

bool WriteRecord(const Descriptor& descriptor, const Json::Value& view, unsigned char* record,
                 const std::string& path, std::string& error) {
    if (!view.isObject()) {
        return Fail(error, path.empty() ? descriptor.name : path, "expected an object");
    }
    for (auto it = view.begin(); it != view.end(); ++it) {
        const std::string name = it.name();
        const std::string fieldPath = path.empty() ? name : path + "." + name;
        const Field* field = FindField(descriptor, name);
        if (field == nullptr) {
            return Fail(error, fieldPath, "unknown field of " + descriptor.name);
        }
        if (!WriteField(*field, *it, record + field->offset, 0, fieldPath, error)) {
            return false;
        }
    }
    return true;
}

}  // namespace

Json::Value ToJson(const Descriptor& descriptor, const void* record, TimeSections timeSections) {
    const auto* bytes = static_cast<const unsigned char*>(record);
    Json::Value view(Json::objectValue);
    for (const Field& field : descriptor.fields) {
        const unsigned char* at = bytes + field.offset;
        if (field.kind == Kind::Padding ||
            (field.kind == Kind::Reserved &&
             std::all_of(at, at + field.size, [](unsigned char byte) { return byte == 0; }))) {
            continue;
        }
        view[field.name] = FieldToJson(field, at, 0, timeSections);
    }
    return view;
}

// Works on a copy, so that a view refused halfway leaves the record as it was.
bool FromJson(const Descriptor& descriptor, const Json::Value& view, void* record,
              std::string& error) {
    auto* bytes = static_cast<unsigned char*>(record);
    std::vector<unsigned char> copy(bytes, bytes + descriptor.size);
    if (!WriteRecord(descriptor, view, copy.data(), std::string(), error)) {
        return false;
    }
    std::memcpy(bytes, copy.data(), copy.size());
    return true;
}

const Descriptor* FindDescriptor(std::string_view recordName) {
    for (const Descriptor* descriptor : AllDescriptors()) {
        if (descriptor->name == recordName) {
            return descriptor;
        }
    }
    return nullptr;
}

}  // namespace protofix::describe
