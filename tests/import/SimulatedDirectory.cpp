// A test's street-directory service.
#include "SimulatedDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

#include "services/Confamb.h"

namespace {

std::unique_ptr<const callejero::Directory> someDirectory() {
    return callejero::listedDirectory(
        {{.name = "A CORUÑA",
          .code = 15,
          .municipalities =
              {{.name = "NEGREIRA", .code = 56, .streets = {{"CL", "CASTELAO"}}},
               {.name = "SADA", .code = 75, .streets = {{"CL", "PEÑA LA"}, {"AV", "MAR, DO"}}}}},
         {.name = "LA RIOJA",
          .code = 26,
          .municipalities = {{.name = "EL RASILLO/RASILLO", .code = 122},
                             {.name = "HARO",
                              .code = 71,
                              .streets = {{"CL", "VEGA LA"}, {"PZ", "PAZ"}, {"CL", "NUMERO   51"}}}}}});
}

} // namespace

SimulatedDirectory::SimulatedDirectory() : SimulatedDirectory(someDirectory()) {}

SimulatedDirectory::SimulatedDirectory(std::unique_ptr<const callejero::Directory> directory)
    : server_(std::move(directory)) {
    setenv("no_proxy", "127.0.0.1", 1);
    Config.directoryService.server = server_.url();
}

SimulatedDirectory::~SimulatedDirectory() {
    Config.directoryService = {};
    for (const std::string& complaint : server_.complaints()) {
        ADD_FAILURE() << complaint;
    }
}
