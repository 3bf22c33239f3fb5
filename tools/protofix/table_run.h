// One table of deserialize or roundtrip, converted once into the record (or merged into the F5
// text), and what the section gives back from it.
#ifndef PROTOFIX_TOOL_TABLE_RUN_H
#define PROTOFIX_TOOL_TABLE_RUN_H

#include "job.h"
#include "library.h"
#include "losses.h"
#include "schema.h"
#include "section_table.h"

#include <optional>
#include <string>
#include <vector>

namespace protofix::tool {

class TableRun {
public:
    TableRun(const Job& job, const Section& section, Knowledge& knowledge)
        : m_job(job),
          m_section(section),
          m_knowledge(knowledge),
          m_converter(section.name, job.TextMode(), Settings::Of(job)) {}

    // Reads the inputs and converts the table; false, with the result to give, when something
    // failed or the section refused.
    bool Run(Result& failure) { return Read(failure) && Convert(failure); }

    // The conversion again, of another table or with another converter: true when it gives the
    // same answer and the same output.
    bool SameAs(const std::string& tableText, const Converter& converter);

    // What was lost: one walk of the table given against the table given back. The values not
    // given back are not read when the table without them converts the same: all of them, or else
    // those of shapes the section's examples do not know (one run each at most).
    std::vector<Loss> Losses(std::vector<bool>& notRead);

    // True when the section read none of the table: every value of it unknown and not read, and
    // the output as it started.
    bool NothingRead(const std::vector<Loss>& losses, const std::vector<bool>& notRead) const;

    // The suggestion for a key the section does not read.
    std::string Suggestion(const Loss& loss) const;

    const Json::Value& Table() const { return m_table; }
    const std::vector<std::string>& Warnings() const { return m_warnings; }
    const std::string& TableText() const { return m_tableText; }
    const Converter& Library() const { return m_converter; }

    // The output, for the command line and for a batch.
    void Output(Result& result) const;

private:
    bool Read(Result& failure);

    // The file's JSON, or the table of the envelope it holds.
    bool ReadTable(Result& failure);

    bool ReadF5Text(Result& failure);

    bool Convert(Result& failure);

    // Which value raised the library's exception: one of the F5 text when an empty table raises
    // too, else one of the table.
    std::string Blame();

    // The table's keys that the section does not have, with the key each most likely means.
    std::string KeysHint();

    Result Refusal();

    // The table the section gives back from its output; null when it gives none.
    Json::Value Back() const;

    const Job& m_job;
    const Section& m_section;
    Knowledge& m_knowledge;
    Converter m_converter;
    Json::Value m_table;
    std::string m_tableText;
    Bytes m_start;
    Bytes m_bytes;
    std::string m_oldText;
    Json::Value m_oldDocument;
    std::optional<F5Buffer> m_buffer;
    std::string m_merged;
    int m_result = 0;
    Json::Value m_back;  // the table the section gave back
    std::vector<std::string> m_warnings;
};

}  // namespace protofix::tool

#endif
