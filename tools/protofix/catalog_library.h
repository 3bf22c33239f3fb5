// The library as the catalog's experiments run it: one section at a time, in record or text mode,
// as the tool runs it with no request options; each run says whether the section converted,
// refused or raised.
#ifndef PROTOFIX_TOOL_CATALOG_LIBRARY_H
#define PROTOFIX_TOOL_CATALOG_LIBRARY_H

#include "library.h"
#include "section_table.h"

#include <json/json.h>

#include <string>

namespace protofix::tool {

// A value of the wrong JSON kind where the section reads one raises.
enum class Outcome { kConverted, kRefused, kRaised };

// Serialize: the record to the table of the envelope the library answers.
Outcome Packet(const Section& section, const Bytes& record, Json::Value& table);
// Serialize --f5: the same of the F5 text.
Outcome PacketText(const Section& section, const std::string& f5, Json::Value& table);
// Deserialize: the table onto the record.
Outcome Parse(const Section& section, const Json::Value& table, Bytes& record);
// Deserialize --f5: the table merged into the F5 text, read back as a document. The buffer has
// room for any merge of an example.
Outcome Merge(const Section& section, const Json::Value& table, const std::string& f5,
              Json::Value& merged);

}  // namespace protofix::tool

#endif
