// @modelcontextprotocol/sdk launching `orvex serve --stdio` as a process.
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';
import { buildFlowchart } from './flowchart.mjs';

const transport = new StdioClientTransport({ command: process.argv[2], args: ['serve', '--stdio'], stderr: 'ignore' });
const client = new Client({ name: 'orvex-sdk-stdio-test', version: '1.0.0' });
await client.connect(transport);
await buildFlowchart(client, 'sdk over stdio');
await client.close();
