#include "catalog_record.h"

#include "catalog_leaves.h"

#include <algorithm>
#include <cstring>

namespace protofix::tool {
namespace {

using protofix::describe::Descriptor;
using protofix::describe::Field;
using protofix::describe::Kind;

bool IsInteger(Kind kind) {
    switch (kind) {
        case Kind::Int8:
        case Kind::UInt8:
        case Kind::Int16:
        case Kind::UInt16:
        case Kind::Int32:
        case Kind::UInt32:
        case Kind::Int64:
        case Kind::UInt64: return true;
        default: return false;
    }
}

// The bits of an integer element, whatever its width.
std::uint64_t Bits(const unsigned char* at, std::size_t size) {
    switch (size) {
        case 1: return *at;
        case 2: {
            std::uint16_t v = 0;
            std::memcpy(&v, at, sizeof v);
            return v;
        }
        case 4: {
            std::uint32_t v = 0;
            std::memcpy(&v, at, sizeof v);
            return v;
        }
        default: {
            std::uint64_t v = 0;
            std::memcpy(&v, at, std::min(size, sizeof v));
            return v;
        }
    }
}

void StoreBits(unsigned char* at, std::size_t size, std::uint64_t value) {
    switch (size) {
        case 1: *at = static_cast<unsigned char>(value); break;
        case 2: {
            const auto v = static_cast<std::uint16_t>(value);
            std::memcpy(at, &v, sizeof v);
            break;
        }
        case 4: {
            const auto v = static_cast<std::uint32_t>(value);
            std::memcpy(at, &v, sizeof v);
            break;
        }
        default: std::memcpy(at, &value, std::min(size, sizeof value)); break;
    }
}

}  // namespace

void CollectElements(const Descriptor& descriptor, std::size_t base, const std::string& owner,
                     std::vector<Element>& elements, Parts& parts) {
    const std::string prefix = owner.empty() ? "" : owner + ".";
    for (const Field& field : descriptor.fields) {
        if (field.kind == Kind::Padding) continue;
        std::string name = prefix + field.name;
        if (field.kind == Kind::Reserved) {
            elements.push_back({name, base + field.offset, field.size, field.kind});
            continue;
        }
        std::size_t count = 1;
        for (const std::size_t extent : field.shape) {
            count *= extent;
            name += "[]";
        }
        if (!owner.empty()) parts[owner].insert(name);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = base + field.offset + i * field.elementSize;
            if (field.kind == Kind::Record) {
                CollectElements(*field.record, at, name, elements, parts);
            } else {
                elements.push_back({name, at, field.elementSize, field.kind});
            }
        }
    }
}

FieldBits ChangedFields(const std::vector<Element>& elements, const Bytes& a, const Bytes& b) {
    FieldBits changed;
    for (const Element& e : elements) {
        if (std::memcmp(a.data() + e.offset, b.data() + e.offset, e.size) == 0) continue;
        std::uint64_t& bits = changed[e.field];
        if (IsInteger(e.kind)) {
            bits |= Bits(a.data() + e.offset, e.size) ^ Bits(b.data() + e.offset, e.size);
        }
    }
    return changed;
}

std::vector<FieldElements> ByField(const std::vector<Element>& elements) {
    std::vector<FieldElements> fields;
    std::map<std::string, std::size_t> index;
    for (const Element& element : elements) {
        const auto found = index.emplace(element.field, fields.size());
        if (found.second) fields.push_back({element.field, {}});
        fields[found.first->second].elements.push_back(&element);
    }
    return fields;
}

std::vector<std::pair<Bytes, std::uint64_t>> OtherRecords(const Bytes& record,
                                                          const FieldElements& field) {
    std::vector<std::pair<Bytes, std::uint64_t>> others;
    const Element& first = *field.elements.front();
    if (IsInteger(first.kind)) {
        for (unsigned bit = 0; bit < first.size * 8 && bit < 64; ++bit) {
            const std::uint64_t mask = std::uint64_t{1} << bit;
            Bytes other = record;
            for (const Element* e : field.elements) {
                unsigned char* at = other.data() + e->offset;
                StoreBits(at, e->size, Bits(at, e->size) ^ mask);
            }
            others.emplace_back(std::move(other), mask);
        }
    } else if (first.kind == Kind::Text) {
        Bytes other = record;
        for (const Element* e : field.elements) {
            unsigned char& c = other[e->offset];
            c = c == 0 ? 'x' : static_cast<unsigned char>(Another(static_cast<char>(c)));
        }
        others.emplace_back(std::move(other), 0);
    } else if (first.kind == Kind::Float || first.kind == Kind::Double) {
        Bytes other = record;
        for (const Element* e : field.elements) {
            unsigned char* at = other.data() + e->offset;
            if (e->kind == Kind::Float) {
                float v = 0;
                std::memcpy(&v, at, sizeof v);
                v += 1.0F;
                std::memcpy(at, &v, sizeof v);
            } else {
                double v = 0;
                std::memcpy(&v, at, sizeof v);
                v += 1.0;
                std::memcpy(at, &v, sizeof v);
            }
        }
        others.emplace_back(std::move(other), 0);
    }
    return others;
}

}  // namespace protofix::tool
