// The reference side of the MCP throughput comparison: the official TypeScript SDK in its stateless
// streamable HTTP form with JSON responses, offering the same get_drawing_info tool. A new server and
// transport per request is how the SDK serves stateless HTTP.
import http from 'node:http';
import { McpServer } from '@modelcontextprotocol/sdk/server/mcp.js';
import { StreamableHTTPServerTransport } from '@modelcontextprotocol/sdk/server/streamableHttp.js';

const port = Number(process.argv[2] ?? 3102);

function buildServer() {
  const server = new McpServer({ name: 'sdk-peer', version: '1.0.0' });
  server.registerTool(
    'get_drawing_info',
    { title: 'Get Drawing Info', description: 'Units, size, layers and item count of the drawing' },
    async () => ({
      content: [{ type: 'text', text: JSON.stringify({ units: 'mm', width: 100, height: 50, layers: 1, items: 0 }) }],
    }),
  );
  return server;
}

http
  .createServer((req, res) => {
    if (req.method !== 'POST' || req.url !== '/mcp') {
      res.writeHead(405).end();
      return;
    }
    let body = '';
    req.on('data', (chunk) => (body += chunk));
    req.on('end', async () => {
      const server = buildServer();
      const transport = new StreamableHTTPServerTransport({ sessionIdGenerator: undefined, enableJsonResponse: true });
      res.on('close', () => {
        transport.close();
        server.close();
      });
      await server.connect(transport);
      await transport.handleRequest(req, res, JSON.parse(body));
    });
  })
  .listen(port, '127.0.0.1', () => console.log(`sdk peer on ${port}`));
