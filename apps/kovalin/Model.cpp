#include "kovalin/Model.h"

#include "kovalin/ModelInfo.h"
#include "kovalin/ModelVerify.h"

namespace kovalin::cli {

void addModelCommand(CLI::App& program)
{
    CLI::App* model = program.add_subcommand("model", "Check and describe search models");
    model->require_subcommand(1);
    addModelVerifyCommand(*model);
    addModelInfoCommand(*model);
}

} // namespace kovalin::cli
