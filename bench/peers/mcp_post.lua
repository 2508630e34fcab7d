-- wrk: POST the JSON-RPC body in the environment variable MCP_BODY with the headers an MCP client sends.
wrk.method = "POST"
wrk.body = os.getenv("MCP_BODY")
wrk.headers["Content-Type"] = "application/json"
wrk.headers["Accept"] = "application/json, text/event-stream"
wrk.headers["MCP-Protocol-Version"] = "2025-06-18"

-- A run whose answers are not 2xx measures errors, not the server: the script warns on them.
function done(summary, latency, requests)
  io.write(string.format("RESULT rps=%.1f p99_ms=%.3f non200=%d errors=%d\n",
    summary.requests / (summary.duration / 1e6), latency:percentile(99) / 1000,
    summary.errors.status, summary.errors.connect + summary.errors.read + summary.errors.write + summary.errors.timeout))
end
