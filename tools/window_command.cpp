#include "window_command.h"

#include <QApplication>
#include <cstdio>

#include "app/assembly_rules_app.h"

int RunWindowCommand(const std::function<int()>& show) {
    static int argc = 1;
    static char name[] = "vantor-rules";
    static char* argv[] = {name, nullptr};
    QApplication app(argc, argv);
    if (!StartAssemblyRulesApp()) {
        std::fprintf(stderr, "vantor-rules: the resource libraries could not be loaded\n");
        return 1;
    }
    int status = 0;
    {
        CZebResourceScope scope;
        status = show();
    }
    StopAssemblyRulesApp();
    return status;
}
