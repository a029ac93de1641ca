// Starts programs that end together with this process.

import { spawn } from "node:child_process";
import { once } from "node:events";

const running = new Set();

function stopAll() {
    running.forEach((one) => one.kill("SIGKILL"));
}

process.on("exit", stopAll);
for (const signal of ["SIGHUP", "SIGINT", "SIGTERM"]) {
    process.on(signal, () => process.exit(1));
}

/**
 * Starts a program. `setpriv` makes the system end the program when this process ends, even if this process is killed.
 */
export function start(program, args, options) {
    const started = spawn("setpriv", ["--pdeathsig", "KILL", program, ...args], options);
    running.add(started);
    started.on("exit", () => running.delete(started));
    started.on("error", (error) => {
        throw new Error(`cannot start ${program}: ${error.message}. Install the packages of the tests: tools/setup`);
    });
    return started;
}

/** Ends a program and waits for its end. */
export async function stop(started) {
    if (started.exitCode === null && started.signalCode === null) {
        started.kill();
        await once(started, "exit");
    }
}

/**
 * Starts a virtual display, because some browsers have no WebGL if there is no display. The result's `environment`
 * makes programs use this display.
 */
export async function startDisplay() {
    const options = { stdio: ["ignore", "ignore", "ignore", "pipe"] };
    const server = start("Xvfb", ["-displayfd", "3", "-screen", "0", "2000x1300x24", "-nolisten", "tcp"], options);
    const [number] = await once(server.stdio[3], "data"); // the server writes it as soon as it accepts programs
    const environment = {
        ...process.env,
        DISPLAY: `:${String(number).trim()}`,
        // With this address, browsers start no message bus, which would keep running after the tests.
        DBUS_SESSION_BUS_ADDRESS: "disabled:",
        NO_AT_BRIDGE: "1",
    };
    return { environment, stop: () => stop(server) };
}
