#!/usr/bin/env node
// A small stand-in for the Messages API, for end-to-end tests that drive the
// real Claude Code client without any network.  No dependencies, Node 18+.
//
//   node mock-api.mjs [--port 8787] [--scenarios scenarios.json] [--log requests.jsonl]
//
// What it answers is chosen by the prompt: the newest user message that holds
// the word "mock:NAME" picks scenario NAME; the number of assistant messages
// after that prompt picks the step.  So the server keeps no state of its own,
// several clients may share it, and a sub-agent whose prompt holds "mock:OTHER"
// runs its own scenario.  A step is an object: text, thinking, tools [{name, input}],
// delay_ms, chunk_delay_ms, error {status, type, message}; all optional.  Steps with tools go on, others
// end the turn.  ${backgroundId} and ${agentId} in tool inputs stand for the last ones started.

import http from "node:http";
import fs from "node:fs";
import path from "node:path";
import { fileURLToPath } from "node:url";

const here = path.dirname(fileURLToPath(import.meta.url));
const opt = { port: "8787", scenarios: path.join(here, "scenarios.json"), log: "" };
for (let i = 2; i < process.argv.length; i += 2) {
  const key = process.argv[i].replace(/^--/, "");
  if (!(key in opt) || process.argv[i + 1] === undefined) {
    console.error("usage: mock-api.mjs [--port N] [--scenarios FILE] [--log FILE]");
    process.exit(2);
  }
  opt[key] = process.argv[i + 1];
}

// Re-read on every request, so that a test can change the script while it runs.
const scenarios = () => JSON.parse(fs.readFileSync(opt.scenarios, "utf8"));
const sleep = (ms) => new Promise((done) => setTimeout(done, ms));
let serial = 0;
const newId = (prefix) => `${prefix}_mock${Date.now().toString(36)}${(++serial).toString(36)}`;

const textOf = (message) =>
  typeof message.content === "string"
    ? message.content
    : (message.content || []).filter((b) => b.type === "text").map((b) => b.text).join("\n");

/** The scenario name, and how many assistant messages followed the prompt naming it. */
function locate(messages) {
  let steps = 0;
  for (let i = messages.length - 1; i >= 0; i--) {
    if (messages[i].role === "assistant") { steps++; continue; }
    if (messages[i].role !== "user") continue;
    const found = [...textOf(messages[i]).matchAll(/\bmock:([A-Za-z0-9_-]+)/g)].pop();
    if (found) return { name: found[1], step: steps };
  }
  return { name: "", step: 0 };
}

/** Side requests (titles, summaries, …) offer no tools; they get a fixed text. */
function chooseStep(body) {
  if (!body.tools?.length) {
    const wantsJson = body.output_config?.format || body.output_format;
    return { name: "(side)", step: 0, text: wantsJson ? '{"title":"Mock title"}' : "Mock side answer." };
  }
  const { name, step } = locate(body.messages || []);
  const list = scenarios()[name] || [];
  return { name, step, ...(list[step] || { text: name ? `Mock: ${name} finished.` : "Mock: no scenario named." }) };
}

/** Tool inputs may point at ids that the client made up: ${agentId}, ${taskId}, … */
function fillIn(value, body) {
  const all = JSON.stringify(body.messages || []);
  const pick = (re) => ([...all.matchAll(re)].pop() || [])[1] || "unknown";
  const ids = {
    backgroundId: () => pick(/running in background with ID: ([A-Za-z0-9_-]+)/g),
    agentId: () => pick(/agentId: ([A-Za-z0-9_-]+)/g),
  };
  if (typeof value === "string") return value.replace(/\$\{(\w+)\}/g, (m, k) => (ids[k] ? ids[k]() : m));
  if (Array.isArray(value)) return value.map((v) => fillIn(v, body));
  if (value && typeof value === "object")
    return Object.fromEntries(Object.entries(value).map(([k, v]) => [k, fillIn(v, body)]));
  return value;
}

function contentOf(step, body) {
  const content = [];
  if (step.thinking) content.push({ type: "thinking", thinking: step.thinking, signature: "mock" });
  if (step.text) content.push({ type: "text", text: step.text });
  for (const tool of step.tools || [])
    content.push({ type: "tool_use", id: newId("toolu"), name: tool.name, input: fillIn(tool.input || {}, body) });
  return content;
}

const usage = { input_tokens: 100, cache_creation_input_tokens: 0, cache_read_input_tokens: 0, output_tokens: 20 };

async function stream(res, message, chunkDelay) {
  res.writeHead(200, { "content-type": "text/event-stream", "cache-control": "no-cache" });
  const send = (type, data) => res.write(`event: ${type}\ndata: ${JSON.stringify({ type, ...data })}\n\n`);
  send("message_start", { message: { ...message, content: [], stop_reason: null, usage: { ...usage, output_tokens: 1 } } });
  for (const [index, block] of message.content.entries()) {
    if (block.type === "tool_use") {
      send("content_block_start", { index, content_block: { ...block, input: {} } });
      send("content_block_delta", { index, delta: { type: "input_json_delta", partial_json: JSON.stringify(block.input) } });
    } else {
      const key = block.type; // "text" or "thinking"
      send("content_block_start", { index, content_block: { type: key, [key]: "", ...(key === "thinking" && { signature: "" }) } });
      for (const piece of block[key].match(/[\s\S]{1,12}/g) || []) {
        send("content_block_delta", { index, delta: { type: `${key}_delta`, [key]: piece } });
        if (chunkDelay) await sleep(chunkDelay);
      }
      if (key === "thinking") send("content_block_delta", { index, delta: { type: "signature_delta", signature: block.signature } });
    }
    send("content_block_stop", { index });
  }
  send("message_delta", { delta: { stop_reason: message.stop_reason, stop_sequence: null }, usage });
  send("message_stop", {});
  res.end();
}

function json(res, status, value) {
  res.writeHead(status, { "content-type": "application/json" });
  res.end(JSON.stringify(value));
}

function note(entry) {
  if (opt.log) fs.appendFileSync(opt.log, JSON.stringify({ at: Date.now() / 1000, ...entry }) + "\n");
}

async function messages(res, body) {
  const step = chooseStep(body);
  note({
    path: "/v1/messages", model: body.model, stream: !!body.stream, scenario: step.name, step: step.step,
    effort: body.output_config?.effort, thinking: body.thinking, tools: (body.tools || []).map((t) => t.name),
    lastUser: textOf((body.messages || []).filter((m) => m.role === "user").pop() || {}).slice(-300),
  });
  if (step.delay_ms) await sleep(step.delay_ms);
  if (step.error)
    return json(res, step.error.status || 500, {
      type: "error",
      error: { type: step.error.type || "api_error", message: step.error.message || "mock error" },
    });
  const content = contentOf(step, body);
  const message = {
    id: newId("msg"), type: "message", role: "assistant", model: body.model, content,
    stop_reason: step.tools?.length ? "tool_use" : "end_turn", stop_sequence: null, usage,
  };
  if (body.stream) await stream(res, message, step.chunk_delay_ms || 0);
  else json(res, 200, message);
}

const server = http.createServer((req, res) => {
  const chunks = [];
  req.on("data", (c) => chunks.push(c));
  req.on("end", async () => {
    const where = req.url.split("?")[0];
    try {
      const body = chunks.length ? JSON.parse(Buffer.concat(chunks).toString("utf8")) : {};
      if (req.method === "POST" && where === "/v1/messages") return await messages(res, body);
      note({ path: where, method: req.method });
      if (req.method === "POST" && where === "/v1/messages/count_tokens") return json(res, 200, { input_tokens: 100 });
      if (req.method === "HEAD" || where === "/") return json(res, 200, {});
      json(res, 404, { type: "error", error: { type: "not_found_error", message: "mock: no such path" } });
    } catch (problem) {
      note({ path: where, problem: String(problem) });
      if (!res.headersSent) json(res, 500, { type: "error", error: { type: "api_error", message: String(problem) } });
      else res.end();
    }
  });
});

server.listen(Number(opt.port), "127.0.0.1", () => console.log(`mock-api on http://127.0.0.1:${server.address().port}`));
