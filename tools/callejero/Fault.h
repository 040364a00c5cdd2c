// How the simulated service can misbehave.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tools/callejero/Operation.h"

namespace callejero {

enum class Fault {
    None,
    Refuse,       // the connection is reset; not a byte of an answer
    Stall,        // no answer until release()
    StallMidway,  // the same, after half the body
    Cut,          // half the announced body
    CutChunked,   // half a body in chunks
    Status500,    // status 500, a plain text
    Redirection,  // status 302, and no address
    SoapFault,    // status 500, a SOAP fault
    SoapFaultOk,  // a SOAP fault with status 200
    ErrorAnswer,  // an answer that the province does not exist
    MoreCounted,  // one entry more counted than listed
    FewerCounted, // one entry fewer
    NoCount,      // no count element
    BadCount,     // a count that is not a number
    NoEntries,    // a count and no list
    OtherCoding,  // the answer, in UTF-8, declares another encoding
    EmptyBody,    // status 200 and nothing
    Garbage,      // status 200 and bytes that are not XML
    HtmlPage,     // status 200 and a web page
    Huge,         // 1 GiB, announced
    HugeChunked,  // the same in chunks, its size unannounced
};

/// Where a fault applies.
struct FaultRule {
    std::optional<Operation> operation = {}; // null: all of them
    std::string name = {}; // only for requests with this province or municipality; empty: all
    Fault fault = Fault::None;
};

/// The fault with this name on the command line: "rechaza", "corta", "500" and so on; null for an unknown
/// one.
[[nodiscard]] std::optional<Fault> faultNamed(std::string_view name);
/// All names, for messages: "rechaza, calla, …".
[[nodiscard]] std::string faultNames();
/// A line for each, for the help: its name and what it sends in place of the answer, in Spanish.
[[nodiscard]] std::string faultExplanations();

/// Reads "ConsultaVia=corta", "ConsultaVia:HARO=corta", "todo=500". Errors: std::invalid_argument (Spanish).
[[nodiscard]] FaultRule readFaultRule(std::string_view text);

/// Applies a fault of the content to the text of a good answer; other faults leave it unchanged.
[[nodiscard]] std::string spoil(std::string answer, Operation operation, Fault fault);

} // namespace callejero
