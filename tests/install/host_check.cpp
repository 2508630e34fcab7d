// Links the three installed layers and uses each: a Mermaid flowchart laid out by the reference host
// (Graphviz) on a Cairo document, painted to PNG (Cairo, Pango), and an MCP server (agent) given the
// host's standard tools. Exits non-zero, naming the step, when one fails.
#include <cstdio>
#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "host/paint/cairo_label.h"
#include "host/paint/export.h"
#include "host/tools/register_tools.h"
#include "orvex/agent/mcp_server.h"

int main() {
    using namespace Orvex;
    TORXCairoLabel doc;
    if (!LoadDiagramWithLayout(doc, "flowchart TD\n  a[Start] --> b{Ready?}\n  b --> c[Go]\n",
                               TQVLDiagramFormat::dgMermaid)) {
        std::fprintf(stderr, "host_check: the diagram was not laid out\n");
        return 1;
    }
    std::vector<std::uint8_t> png;
    std::string error;
    if (!EncodePng(doc, {}, png, error) || png.size() < 8 || png[1] != 'P' || png[2] != 'N' ||
        png[3] != 'G') {
        std::fprintf(stderr, "host_check: no PNG: %s\n", error.c_str());
        return 1;
    }
    TORXMCPServer server;
    Host::RegisterStandardTools(server, {});
    if (server.ToolCount() == 0) {
        std::fprintf(stderr, "host_check: the server has no tools\n");
        return 1;
    }
    std::printf("host_check: %d items painted in %zu PNG bytes; %zu tools\n", doc.GetItemsCount(), png.size(),
                server.ToolCount());
    return 0;
}
