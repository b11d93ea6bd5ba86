// The client of the official SDK, told by lines of JSON what to ask: client.mjs REVISION COMMAND ARGS...
// Each line in is {"do": METHOD, "with": PARAMS, ...}; each line out is {"result": ...}, or {"error": {code, message}}.
import { createInterface } from "node:readline";
import { Client } from "@modelcontextprotocol/client";
import { StdioClientTransport } from "@modelcontextprotocol/client/stdio";

const [revision, command, ...args] = process.argv.slice(2);
const mode = revision === "2026-07-28" ? { pin: revision } : "legacy";
const client = new Client({ name: "test", version: "1.0" }, { versionNegotiation: { mode } });
const transport = new StdioClientTransport({ command, args, cwd: process.cwd(), env: process.env, stderr: "inherit" });
await client.connect(transport);

const actions = {
  about: async () => ({
    server: client.getServerVersion(),
    capabilities: client.getServerCapabilities(),
    instructions: client.getInstructions(),
    revision: client.getNegotiatedProtocolVersion?.(),
  }),
  tools: () => client.listTools(),
  resources: () => client.listResources(),
  read: (params) => client.readResource(params),
  prompts: () => client.listPrompts(),
  prompt: (params) => client.getPrompt(params),
  call: async (params, { cancelAfter, timeout }) => {
    const progress = [];
    const canceller = new AbortController();
    const onprogress = (told) => {
      progress.push(told);
      if (progress.length === cancelAfter) canceller.abort("not needed any more");
    };
    const options = { onprogress, signal: canceller.signal, timeout: timeout ?? 120000 };
    const result = await client.callTool(params, options);
    return { ...result, progress };
  },
};

for await (const line of createInterface({ input: process.stdin })) {
  const { do: name, with: params, ...options } = JSON.parse(line);
  let told;
  try {
    told = { result: await actions[name](params, options) };
  } catch (error) {
    told = { error: { code: error.code ?? null, message: String(error.message ?? error) } };
  }
  process.stdout.write(JSON.stringify(told) + "\n");
}
await client.close();
