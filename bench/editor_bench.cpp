// The editor page's responsiveness: with 1,000 items, how long one pointer move of a drag takes to become a
// frame a page can show. In process (the session's work: the editor's move and the new drawing, marks and
// state) and over loopback HTTP as a page sees it (the move posted, the next frame read from the stream).
#include <benchmark/benchmark.h>
#include <httplib.h>

#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

#include "host/editor/edit_server.h"
#include "host/editor/edit_session.h"
#include "host/editor/edit_tool_caller.h"
#include "host/tools/register_tools.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/document/document.h"
#include "orvex/document/headless.h"

namespace {

using Orvex::TJSON;
constexpr double kPixelsPerMM = 96.0 / 25.4;

// 1,000 items on a 400 x 250 mm page, a tenth of a 10 mm grid each: rectangles, texts and flow elements.
void FillDrawing(Orvex::TORXMCPServer& aServer, Orvex::TORXBaseLabel& aDoc) {
    const auto call = Orvex::Host::ToolCallerOf(aServer, aDoc);
    call("setup_drawing", {{"width", 400}, {"height", 250}});
    TJSON batch = TJSON::array();
    for (int i = 0; i < 1000; ++i) {
        const double x = 2 + (i % 40) * 10.0, y = 2 + (i / 40) * 10.0;
        switch (i % 3) {
            case 0:
                call("add_shape", {{"kind", "rectangle"}, {"x", x}, {"y", y}, {"width", 7}, {"height", 6}});
                break;
            case 1:
                call("add_shape",
                     {{"kind", "text"}, {"x", x}, {"y", y + 4}, {"text", "T" + std::to_string(i)}});
                break;
            default:
                call("add_flow", {{"x", x}, {"y", y}, {"width", 7}, {"height", 6}, {"text", "F"}});
                break;
        }
    }
    aDoc.EndUpdate();
}

TJSON Move(double aX, double aY, const char* aKind = "move") {
    return {{"op", "pointer"}, {"kind", aKind}, {"x", aX}, {"y", aY}, {"ppu", kPixelsPerMM}};
}

void BM_EditorDragMoveInProcess(benchmark::State& state) {
    Orvex::TORXHeadlessLabel doc;
    Orvex::TORXMCPServer tools;
    Orvex::Host::RegisterStandardTools(tools, {});
    FillDrawing(tools, doc);
    Orvex::Host::TEditSession session(doc, Orvex::Host::ToolCallerOf(tools, doc), {});
    session.Handle({{"op", "tool"}, {"name", "select"}});
    session.Handle({{"op", "settings"}, {"snap", false}});  // every move lands somewhere new
    session.Handle(Move(2, 5, "down"));                     // on the first rectangle's left edge
    if (doc.Selection().empty()) state.SkipWithError("the press took no item");
    double dx = 1;
    for (auto _ : state) {
        dx = dx > 20 ? 1.5 : dx + 0.7;  // past the pick gap, so the drag has begun
        session.Handle(Move(2 + dx, 5 + dx / 2));
        session.Publish();
    }
    session.Handle(Move(2 + dx, 5, "up"));
    state.counters["items"] = doc.GetItemsCount();
    state.counters["svg_bytes"] = static_cast<double>(session.Store().Current().Drawing->size());
}
BENCHMARK(BM_EditorDragMoveInProcess)->Unit(benchmark::kMillisecond);

// The host as `orvex edit` runs it: a main thread that owns the document and publishes after every request.
class TEditHost {
  public:
    TEditHost() {
        std::promise<std::uint16_t> port;
        auto ready = port.get_future();
        fThread = std::thread([this, &port] {
            Orvex::TORXHeadlessLabel doc;
            Orvex::TORXMCPServer tools;
            Orvex::Host::RegisterStandardTools(tools, {});
            FillDrawing(tools, doc);
            Orvex::TMainThreadQueue queue;
            Orvex::Host::TEditSession session(doc, Orvex::Host::ToolCallerOf(tools, doc), {});
            session.Publish();
            Orvex::Host::TEditServer server(session, queue);
            port.set_value(server.Start({}));
            while (!fStop.load())
                if (queue.PumpOne(std::chrono::milliseconds(20))) session.Publish();
            server.Stop();
            queue.Stop();
        });
        fPort = ready.get();
    }
    ~TEditHost() {
        fStop.store(true);
        fThread.join();
    }
    std::uint16_t Port() const { return fPort; }

  private:
    std::atomic<bool> fStop{false};
    std::thread fThread;
    std::uint16_t fPort = 0;
};

// Reads the stream on a thread of its own and tells the newest drawing version it has seen.
class TStreamWatcher {
  public:
    explicit TStreamWatcher(std::uint16_t aPort) : fClient("127.0.0.1", aPort) {
        fThread = std::thread([this] {
            std::string buffer;
            fClient.Get("/stream", [this, &buffer](const char* aData, std::size_t aLength) {
                buffer.append(aData, aLength);
                for (auto end = buffer.find('\n'); end != std::string::npos; end = buffer.find('\n')) {
                    if (end > 0) {
                        const TJSON line = TJSON::parse(buffer.substr(0, end));
                        std::lock_guard lock(fMutex);
                        fDrawing = line.value("drawing_version", fDrawing);
                        fChanged.notify_all();
                    }
                    buffer.erase(0, end + 1);
                }
                return !fStop.load();
            });
        });
    }
    ~TStreamWatcher() {
        fStop.store(true);
        fThread.join();  // the stream ends when the host stops
    }
    std::uint64_t Drawing() {
        std::lock_guard lock(fMutex);
        return fDrawing;
    }
    bool WaitPast(std::uint64_t aVersion) {
        std::unique_lock lock(fMutex);
        return fChanged.wait_for(lock, std::chrono::seconds(5), [&] { return fDrawing > aVersion; });
    }

  private:
    httplib::Client fClient;
    std::thread fThread;
    std::mutex fMutex;
    std::condition_variable fChanged;
    std::uint64_t fDrawing = 0;
    std::atomic<bool> fStop{false};
};

void BM_EditorDragMoveLoopback(benchmark::State& state) {
    std::optional<TEditHost> host(std::in_place);
    httplib::Client api("127.0.0.1", host->Port());
    const auto post = [&](const TJSON& aBody) { return api.Post("/api", aBody.dump(), "application/json"); };
    {
        TStreamWatcher stream(host->Port());
        post({{"op", "tool"}, {"name", "select"}});
        post({{"op", "settings"}, {"snap", false}});
        post(Move(2, 5, "down"));
        stream.WaitPast(0);
        double dx = 1;
        for (auto _ : state) {
            dx = dx > 20 ? 1.5 : dx + 0.7;  // past the pick gap, so the drag has begun
            const auto seen = stream.Drawing();
            post(Move(2 + dx, 5 + dx / 2));
            if (!stream.WaitPast(seen)) state.SkipWithError("no frame came for the move");
        }
        post(Move(2, 5, "up"));
        host.reset();  // ends the stream before its watcher joins
    }
}
BENCHMARK(BM_EditorDragMoveLoopback)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
