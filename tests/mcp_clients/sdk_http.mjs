// @modelcontextprotocol/sdk (the 2025 protocol: initialize, tools/list, tools/call) over HTTP.
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StreamableHTTPClientTransport } from '@modelcontextprotocol/sdk/client/streamableHttp.js';
import { buildFlowchart } from './flowchart.mjs';

const url = new URL(process.argv[2]);
const headers = process.env.ORVEX_MCP_TOKEN ? { Authorization: `Bearer ${process.env.ORVEX_MCP_TOKEN}` } : {};
const client = new Client({ name: 'orvex-sdk-http-test', version: '1.0.0' });
await client.connect(new StreamableHTTPClientTransport(url, { requestInit: { headers } }));
await buildFlowchart(client, 'sdk over HTTP');
await client.close();
