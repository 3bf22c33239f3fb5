#include "cli.h"

#include "section_table.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <vector>

#ifndef PROTOFIX_VERSION
#define PROTOFIX_VERSION "unknown"
#endif

namespace protofix::tool {
namespace {

constexpr const char* kCommands = "sections, serialize, deserialize, roundtrip, view or batch";

constexpr const char* kFooter =
    "Exit status: 0 the section converted, 1 it refused, read nothing of its input, something\n"
    "was lost (roundtrip) or a warning was given under --strict, 2 a usage or input error. Every\n"
    "error is one line on standard error; warnings are lines of their own there. Standard output\n"
    "holds only results: nothing is written there when the status is not 0, but for the loss\n"
    "report of roundtrip. A file given as \"-\", or a missing RECORD or TABLE, is read from\n"
    "standard input. --standard is read by the Encode section only, --sub-mode and --current by\n"
    "General and Locales only; the tool warns when an option made no difference.";

// The largest input --max-input allows: what the library's lengths (an int) can hold.
constexpr std::size_t kLargestInput = static_cast<std::size_t>(INT_MAX);

// The options as text, checked here so that a wrong value is explained in the tool's words.
struct Raw {
    std::string section;
    std::string input;
    std::string f5;
    std::string base;
    std::string current;
    std::string channel;
    std::string id;
    std::string standard;
    std::string subMode;
    std::string capacity;
    std::string maxInput;
};

// A whole number in decimal, with no blank before or after it.
bool ParseInteger(const std::string& option, const std::string& text, long long min, long long max,
                  long long& value, Failure& failure) {
    errno = 0;
    char* end = nullptr;
    const bool starts = !text.empty() && (std::isdigit(static_cast<unsigned char>(text[0])) != 0 ||
                                          text[0] == '-' || text[0] == '+');
    const long long number = starts ? std::strtoll(text.c_str(), &end, 10) : 0;
    if (!starts || *end != '\0' || errno != 0 || number < min || number > max) {
        failure = {kBadInput, option + " " + ShownValue(text) + ": expected a whole number from " +
                                  std::to_string(min) + " to " + std::to_string(max)};
        return false;
    }
    value = number;
    return true;
}

bool Given(const CLI::App* command, const std::string& option) {
    const CLI::Option* found = command->get_option_no_throw(option);
    return found != nullptr && found->count() > 0;
}

template <class Field>
bool ReadNumber(const CLI::App* command, const char* option, const std::string& text, Field& field,
                Job& job, Failure& failure) {
    if (!Given(command, option)) return true;
    long long number = 0;
    if (!ParseInteger(option, text, std::numeric_limits<Field>::min(),
                      std::numeric_limits<Field>::max(), number, failure)) {
        return false;
    }
    field = static_cast<Field>(number);
    job.given.emplace_back(option);
    return true;
}

// The request options of the job, when given.
bool ReadRequestOptions(const CLI::App* command, const Raw& raw, Job& job, Failure& failure) {
    if (!ReadNumber(command, "--channel", raw.channel, job.channel, job, failure) ||
        !ReadNumber(command, "--id", raw.id, job.id, job, failure) ||
        !ReadNumber(command, "--sub-mode", raw.subMode, job.subMode, job, failure)) {
        return false;
    }
    if (Given(command, "--standard")) {
        std::string word = raw.standard;
        std::transform(word.begin(), word.end(), word.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (word != "pal" && word != "ntsc") {
            failure = {kBadInput,
                       "--standard " + ShownValue(raw.standard) + ": expected pal or ntsc"};
            return false;
        }
        job.standard = word == "ntsc" ? PROTOFIX_STANDARD_NTSC : PROTOFIX_STANDARD_PAL;
        job.given.emplace_back("--standard");
    }
    if (Given(command, "--current")) job.given.emplace_back("--current");
    if (Given(command, "--capacity")) {
        long long capacity = 0;
        const auto largest = static_cast<long long>(job.largestCapacity);
        if (!ParseInteger("--capacity", raw.capacity, 1, largest, capacity, failure)) {
            failure.message += " (the input limit; --max-input raises it)";
            return false;
        }
        job.capacity = static_cast<int>(capacity);
    }
    return true;
}

void AddMaxInput(CLI::App& command, Raw& raw) {
    command
        .add_option("--max-input", raw.maxInput,
                    "Refuse an input larger than this (default 64M; k, M, G as powers of 1024); "
                    "it also bounds --capacity")
        ->type_name("SIZE");
}

void AddSection(CLI::App& command, Raw& raw) {
    command.add_option("SECTION", raw.section, "Section name, in any case")->required();
}

void AddRequestOptions(CLI::App& command, Raw& raw, Invocation& invocation) {
    command.add_option("--channel", raw.channel, "Channel number of the request (default 0)")
        ->type_name("INT");
    command.add_option("--id", raw.id, "Request id written in the envelope (default 0)")
        ->type_name("UINT");
    command.add_option("--standard", raw.standard, "Video standard, read by Encode: pal or ntsc")
        ->type_name("pal|ntsc");
    command.add_option("--sub-mode", raw.subMode, "Sub-mode, read by General and Locales")
        ->type_name("INT");
    command
        .add_option("--current", raw.current,
                    "The device's current reply {\"params\":{\"table\":...}}, read by General "
                    "and Locales in sub-mode 1")
        ->type_name("REPLY.json");
    command.add_flag("--pretty", invocation.job.pretty, "Indent the JSON printed");
    command.add_flag("--strict", invocation.strict,
                     "Exit with status 1, printing nothing, when there is any warning");
    AddMaxInput(command, raw);
}

// Pairs of options that cannot be given together, and options that need another.
bool CheckCombinations(const CLI::App* command, Failure& failure) {
    const std::pair<const char*, const char*> exclusive[] = {
        {"RECORD", "--f5"}, {"--f5", "--hex"}, {"--f5", "--base"}, {"--markdown", "--json"}};
    for (const auto& [a, b] : exclusive) {
        if (Given(command, a) && Given(command, b)) {
            failure = {kBadInput, std::string(a) + " and " + b + " cannot be given together"};
            return false;
        }
    }
    const std::pair<const char*, const char*> needs[] = {{"--capacity", "--f5"},
                                                         {"--add-member", "--f5"}};
    for (const auto& [option, other] : needs) {
        if (Given(command, option) && !Given(command, other)) {
            failure = {kBadInput, std::string(option) + " goes only with " + other};
            return false;
        }
    }
    if (Given(command, "--examples") && !Given(command, "--markdown") &&
        !Given(command, "--json")) {
        failure = {kBadInput, "--examples goes only with --markdown or --json"};
        return false;
    }
    if (command->get_name() == "roundtrip" && Given(command, "--pretty") &&
        !Given(command, "--json")) {
        failure = {kBadInput,
                   "--pretty goes only with --json on roundtrip: the losses are lines of text"};
        return false;
    }
    return true;
}

// An option given to a command that does not take it, named with the commands that do.
bool MisplacedOption(const CLI::App& app, const CLI::App& command, int argc, char** argv,
                     Failure& failure) {
    for (int i = 2; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--") break;
        if (argument.size() < 3 || argument.compare(0, 2, "--") != 0) continue;
        const std::string name = argument.substr(0, argument.find('='));
        if (name == "--help" || command.get_option_no_throw(name) != nullptr) continue;
        std::string owners;
        for (const CLI::App* other : app.get_subcommands([](const CLI::App*) { return true; })) {
            if (other->get_option_no_throw(name) != nullptr) {
                owners += (owners.empty() ? "" : ", ") + other->get_name();
            }
        }
        failure = {kBadInput, owners.empty() ? "unknown option " + name + "; protofix " +
                                                   command.get_name() + " --help lists its options"
                                             : name + " is an option of " + owners + ", not of " +
                                                   command.get_name()};
        return true;
    }
    return false;
}

bool ReadSource(const std::string& path, std::size_t limit, Source& source, Failure& failure) {
    source.name = DisplayName(path);
    return ReadInput(path, limit, source.text, failure);
}

// Reads the inputs the job names; standard input at most once.
bool ReadSources(const Raw& raw, const CLI::App* command, Job& job, Failure& failure) {
    const bool textMode = Given(command, "--f5");
    bool readsInput = true;  // deserialize and view always read theirs
    if (job.command == Command::kSerialize) readsInput = !textMode;
    if (job.command == Command::kRoundtrip) readsInput = !textMode || Given(command, "TABLE");
    std::vector<std::pair<const std::string*, Source*>> sources;
    const std::string input = raw.input.empty() ? std::string(kStandardInput) : raw.input;
    if (readsInput) sources.emplace_back(&input, &job.input);
    if (textMode) sources.emplace_back(&raw.f5, &job.f5);
    if (Given(command, "--base")) sources.emplace_back(&raw.base, &job.base);
    if (Given(command, "--current")) sources.emplace_back(&raw.current, &job.current);
    const auto stdinUses = std::count_if(sources.begin(), sources.end(),
                                         [](const auto& s) { return *s.first == kStandardInput; });
    if (stdinUses > 1) {
        failure = {kBadInput,
                   "standard input can be read only once: give the other inputs as files (a "
                   "missing RECORD or TABLE means standard input)"};
        return false;
    }
    for (const auto& [path, source] : sources) {
        if (!ReadSource(*path, job.largestCapacity, *source, failure)) return false;
    }
    return true;
}

// The job of a converting command, its options checked and its inputs read.
bool MakeJob(const CLI::App* command, const Raw& raw, Invocation& invocation, Failure& failure) {
    Job& job = invocation.job;
    const std::string name = command->get_name();
    job.command = name == "serialize"     ? Command::kSerialize
                  : name == "deserialize" ? Command::kDeserialize
                  : name == "roundtrip"   ? Command::kRoundtrip
                                          : Command::kView;
    if (raw.section.empty()) {
        failure = {kBadInput, "a SECTION is required ('protofix sections' lists them)"};
        return false;
    }
    job.section = raw.section;
    if (FindSection(job.section) == nullptr) {
        failure = {kBadInput, UnknownSection(job.section)};
        return false;
    }
    return ReadRequestOptions(command, raw, job, failure) &&
           ReadSources(raw, command, job, failure);
}

}  // namespace

bool ParseCommandLine(int argc, char** argv, Invocation& invocation, Failure& failure) {
    CLI::App app{
        "Converts a configuration section of a device between its record, the device's table "
        "and the F5 text of earlier-protocol devices.",
        "protofix"};
    app.footer(kFooter);
    app.set_version_flag("--version", std::string("protofix ") + PROTOFIX_VERSION);
    Raw raw;
    Job& job = invocation.job;

    CLI::App* sections = app.add_subcommand(
        "sections", "List every section: name, accepted modes, record type and record size");
    sections->add_flag("--markdown", invocation.markdown,
                       "The section catalog in Markdown: per key of each section's example table "
                       "its F5 keys and record fields, and the section's notes and losses");
    sections->add_flag("--json", invocation.json,
                       "The list as JSON, one object per section; with --examples, the catalog");
    sections
        ->add_option("--examples", invocation.examples,
                     "Where the examples are, for the catalog (default: examples)")
        ->type_name("DIR");

    CLI::App* serialize = app.add_subcommand(
        "serialize", "Record (named fields, or --hex bytes) or F5 text -> request envelope");
    AddSection(*serialize, raw);
    serialize->add_option("RECORD", raw.input, "The record: its named-field view, or hex bytes")
        ->type_name("RECORD.json");
    serialize->add_option("--f5", raw.f5, "Convert this F5 text instead of a record")
        ->type_name("OLD.json");
    serialize->add_flag("--hex", job.hex, "RECORD is the record's raw bytes in hex");
    serialize->add_flag("--table", job.tableOnly, "Print only the table, not the envelope");
    AddRequestOptions(*serialize, raw, invocation);

    const auto addTableCommand = [&](const char* name, const char* description) {
        CLI::App* command = app.add_subcommand(name, description);
        AddSection(*command, raw);
        command->add_option("TABLE", raw.input, "The device's table (JSON), or an envelope")
            ->type_name("TABLE.json");
        command->add_option("--f5", raw.f5, "Merge the table into this F5 text")
            ->type_name("OLD.json");
        command
            ->add_option("--base", raw.base,
                         "Start from this record instead of zero bytes (the Network record "
                         "names its interfaces here)")
            ->type_name("RECORD.json");
        command
            ->add_option("--capacity", raw.capacity,
                         "Capacity of the F5 buffer in bytes (default " +
                             std::to_string(kDefaultCapacity) + ", or more to hold OLD)")
            ->type_name("BYTES");
        command->add_flag("--add-member", job.addMember,
                          "Let the merge add the section's member to an F5 text that has none");
        AddRequestOptions(*command, raw, invocation);
        return command;
    };
    CLI::App* deserialize = addTableCommand(
        "deserialize", "Table -> record (named fields, or --hex bytes), or merged into F5 text");
    deserialize->add_flag("--hex", job.hex, "Print the record's raw bytes in hex");
    deserialize->add_flag("--raw", job.raw, "Show time sections as their seven numbers");
    CLI::App* roundtrip = addTableCommand(
        "roundtrip",
        "What a table loses through the section (into the record or F5 text and back), or, "
        "with --f5 and no TABLE, what the F5 text loses through its table: PATH: BEFORE -> AFTER");
    roundtrip->add_flag("--json", job.json, "The losses as a JSON array");

    CLI::App* view = app.add_subcommand(
        "view",
        "A record (named fields or hex bytes) as its named fields, or as hex; nothing "
        "is converted");
    AddSection(*view, raw);
    view->add_option("RECORD", raw.input, "The record: named-field view or hex bytes")
        ->type_name("RECORD.json");
    view->add_flag("--hex", job.hex, "Print the record's raw bytes in hex");
    view->add_flag("--raw", job.raw, "Show time sections as their seven numbers");
    view->add_flag("--pretty", job.pretty, "Indent the view");
    view->add_option("--without", job.without, "Leave these top-level fields out")
        ->delimiter(',')
        ->type_name("FIELD,...");
    AddMaxInput(*view, raw);

    CLI::App* batch = app.add_subcommand(
        "batch", "One request a line (JSON Lines) -> one result a line, in order");
    batch->add_option("REQUESTS", invocation.requests, "The requests (default: standard input)")
        ->type_name("REQUESTS.jsonl");
    AddMaxInput(*batch, raw);

    for (CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        command->allow_extras();

    // The command is the first word; a word that names none is said as such.
    if (argc < 2) {
        failure = {kBadInput, std::string("a command is required: ") + kCommands};
        return false;
    }
    if (argv[1][0] != '-') {
        const std::string word = argv[1];
        const CLI::App* named = nullptr;
        for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
            if (command->get_name() == word) named = command;
        }
        if (named == nullptr) {
            failure = {kBadInput, "unknown command \"" + std::string(argv[1]) +
                                      "\"; the commands are " + kCommands};
            return false;
        }
        if (MisplacedOption(app, *named, argc, argv, failure)) return false;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        std::ostringstream out;
        std::ostringstream err;
        if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            app.exit(e, out, err);
            invocation.what = Invocation::kHelp;
            invocation.help = out.str();
            return true;
        }
        // The command is known by now: a required argument missing is its SECTION.
        const bool noSection = dynamic_cast<const CLI::RequiredError*>(&e) != nullptr;
        failure = {kBadInput, noSection ? "a SECTION is required ('protofix sections' lists them)"
                                        : OneLine(e.what()) + " (protofix --help shows the usage)"};
        return false;
    } catch (const CLI::Error& e) {
        failure = {kBadInput, OneLine(e.what())};
        return false;
    }
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    if (chosen.empty()) {
        failure = {kBadInput, std::string("a command is required: ") + kCommands};
        return false;
    }
    const CLI::App* command = chosen.front();
    if (!command->remaining().empty()) {
        failure = {kBadInput, "unexpected argument: " + command->remaining().front() +
                                  " (protofix --help shows the usage)"};
        return false;
    }
    if (!CheckCombinations(command, failure)) return false;
    if (Given(command, "--max-input") &&
        !ParseSize("--max-input", raw.maxInput, kLargestInput, invocation.maxInput, failure)) {
        return false;
    }
    job.largestCapacity = invocation.maxInput;
    if (command == sections) {
        invocation.what = Invocation::kSections;
        invocation.catalog = Given(command, "--examples");
        return true;
    }
    if (command == batch) {
        invocation.what = Invocation::kBatch;
        if (invocation.requests.empty()) invocation.requests = kStandardInput;
        return true;
    }
    invocation.what = Invocation::kJob;
    return MakeJob(command, raw, invocation, failure);
}

}  // namespace protofix::tool
