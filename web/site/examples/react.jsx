import { useState } from "react";
import { createRoot } from "react-dom/client";
import "velmora/element";
import paper from "./pictures/paper.jpg";

const inks = ["teal", "crimson", "indigo"];

function Postcard() {
    const [ink, setInk] = useState(inks[0]);
    return (
        <>
            <div className="inks">
                {inks.map((name) => (
                    <button key={name} aria-pressed={name === ink} onClick={() => setInk(name)}>
                        {name}
                    </button>
                ))}
            </div>
            <velmora-water preset="ink bath" ink={ink}>
                <img src={paper} alt="A sheet of paper" />
            </velmora-water>
        </>
    );
}

createRoot(document.getElementById("app")).render(<Postcard />);
