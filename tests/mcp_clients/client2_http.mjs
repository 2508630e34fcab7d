// @modelcontextprotocol/client 2.x pinned to the 2026-07-28 protocol (server/discover, no initialize).
import assert from 'node:assert/strict';
import { Client, StreamableHTTPClientTransport } from '@modelcontextprotocol/client';
import { buildFlowchart } from './flowchart.mjs';

const url = new URL(process.argv[2]);
const headers = process.env.ORVEX_MCP_TOKEN ? { Authorization: `Bearer ${process.env.ORVEX_MCP_TOKEN}` } : {};
const client = new Client(
  { name: 'orvex-client2-http-test', version: '1.0.0' },
  { versionNegotiation: { mode: { pin: '2026-07-28' } } },
);
await client.connect(new StreamableHTTPClientTransport(url, { requestInit: { headers } }));
assert.equal(client.getProtocolEra(), 'modern');
assert.equal(client.getNegotiatedProtocolVersion(), '2026-07-28');
await buildFlowchart(client, 'client 2.x (2026-07-28) over HTTP');
await client.close();
