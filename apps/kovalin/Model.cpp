#include "kovalin/Model.h"

#include "kovalin/ModelBuild.h"
#include "kovalin/ModelInfo.h"
#include "kovalin/ModelVerify.h"

namespace kovalin::cli {

void addModelCommand(CLI::App& program)
{
    CLI::App* model = program.add_subcommand("model", "Check, describe and build search models");
    model->require_subcommand(1);
    addModelVerifyCommand(*model);
    addModelInfoCommand(*model);
    addModelBuildCommand(*model);
}

} // namespace kovalin::cli
